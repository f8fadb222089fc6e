#include "Orvane/Agents/LoginCapture.h"

#include <csignal>
#include <utility>

#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/LoginEnvironment.h"

namespace orvane {

LoginCapture::LoginCapture(MainLoop& loop, const std::string& shell, const Environment& environment,
                           std::vector<std::string> toolFolders)
    : toolFolders_(std::move(toolFolders)) {
    std::vector<std::string> arguments = LaunchShell::loginArguments(std::string(LoginEnvironment::script));
    arguments.insert(arguments.begin(), shell);
    auto started = ChildProcess::start(
        loop, {.arguments = std::move(arguments), .environment = environment, .group = ChildProcess::Group::ownSession},
        {.onOutput =
             [this](std::string_view bytes) {
                 output_ += bytes;
                 if (output_.size() > LoginEnvironment::maximumOutputSize) stop();
             },
         .onError = {},
         .onExit = [this](const ExitStatus& status) { finish(status); }});
    if (!started) return;
    shell_ = *std::move(started);
    timeout_ = loop.after(limit, [this] { stop(); });
}

void LoginCapture::finish(const ExitStatus& status) {
    timeout_.reset();
    if (status.isSuccess()) {
        if (const auto captured = LoginEnvironment::parse(output_)) {
            entries_ = LoginEnvironment::rescued(*captured, toolFolders_);
        }
    }
    output_ = {};
}

/// Its profile may have started programs that outlive it.
void LoginCapture::stop() {
    timeout_.reset();
    // ESRCH: it has ended by itself.
    if (shell_) (void)shell_->signalGroup(SIGKILL);
}

}  // namespace orvane
