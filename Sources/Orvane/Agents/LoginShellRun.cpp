#include "Orvane/Agents/LoginShellRun.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <utility>

#include "OrvaneCore/Agents/LaunchShell.h"
#include "Platform/Folders.h"

namespace orvane {

namespace {

std::string startFolder(const Environment& environment) {
    std::string home = Folders::home(environment);
    std::error_code error;
    return std::filesystem::is_directory(home, error) ? home : "/";
}

}  // namespace

std::expected<std::unique_ptr<LoginShellRun>, SystemError> LoginShellRun::start(MainLoop& loop, const ShellSetup& setup,
                                                                                std::string script,
                                                                                const Limits& limits,
                                                                                Callbacks callbacks) {
    std::unique_ptr<LoginShellRun> run(new LoginShellRun(limits, std::move(callbacks)));
    std::vector<std::string> arguments = LaunchShell::loginArguments(std::move(script));
    arguments.insert(arguments.begin(), setup.shell);
    auto shell = ChildProcess::start(loop,
                                     {.arguments = std::move(arguments),
                                      .environment = setup.environment,
                                      .workingDirectory = startFolder(setup.environment),
                                      .group = ChildProcess::Group::ownSession},
                                     {.onOutput = [raw = run.get()](std::string_view bytes) { raw->take(bytes); },
                                      .onError = {},
                                      .onExit = [raw = run.get()](ExitStatus status) { raw->finish(status); }});
    if (!shell) return std::unexpected(shell.error());
    run->shell_ = *std::move(shell);
    if (limits.time) run->timeout_ = loop.after(*limits.time, [raw = run.get()] { raw->killGroup(); });
    return run;
}

void LoginShellRun::take(std::string_view bytes) {
    if (callbacks_.onOutput) return callbacks_.onOutput(bytes);
    const std::size_t room = limits_.output - output_.size();
    output_ += bytes.substr(0, std::min(room, bytes.size()));
    if (bytes.size() > room) killGroup();
}

void LoginShellRun::finish(const ExitStatus& status) {
    timeout_.reset();
    killGroup();
    auto onEnd = std::exchange(callbacks_.onEnd, nullptr);
    if (onEnd) onEnd({.status = status, .output = std::move(output_)});
}

void LoginShellRun::killGroup() {
    // ESRCH: nothing is left of it.
    if (shell_) (void)shell_->signalGroup(SIGKILL);
}

}  // namespace orvane
