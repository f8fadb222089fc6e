#include "Orvane/Agents/LoginCapture.h"

#include <string>
#include <utility>

#include "OrvaneCore/Agents/LoginEnvironment.h"

namespace orvane {

LoginCapture::LoginCapture(MainLoop& loop, const ShellSetup& setup) : setup_(setup) {
    auto run = LoginShellRun::start(loop, setup, std::string(LoginEnvironment::script),
                                    {.time = LoginShellRun::answerLimit, .output = LoginEnvironment::maximumOutputSize},
                                    {.onOutput = {}, .onEnd = [this](const LoginShellRun::Result& result) {
                                         if (result.status.isSuccess())
                                             captured_ = LoginEnvironment::parse(result.output);
                                     }});
    if (run) run_ = *std::move(run);
}

std::optional<EnvironmentEntries> LoginCapture::entries() const {
    if (!captured_) return std::nullopt;
    return LoginEnvironment::rescued(*captured_, setup_.toolFolders);
}

}  // namespace orvane
