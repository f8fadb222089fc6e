#pragma once

#include <expected>
#include <memory>
#include <string>
#include <vector>

#include "Orvane/Agents/LaunchSupport.h"
#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/SessionProcess.h"
#include "OrvaneCore/Agents/LaunchPlan.h"
#include "Platform/Environment.h"
#include "Platform/LoopThread.h"

namespace orvane {

/// Starts the programs of sessions on terminals, in the environment that the user's own terminal would give them.
class TerminalLauncher final : public SessionLauncher {
 public:
    struct Setup {
        /// These must outlive it, and it the sessions.
        MainLoop& loop;
        LaunchSupport& support;
        /// Of this process: what a terminal passes on of it goes to the programs.
        Environment environment;
        /// The absolute path of a zsh or bash; `shellOf` the environment, except in a test.
        std::string shell;
    };

    explicit TerminalLauncher(Setup setup);

    /// The shell that sessions run in for a user with this environment.
    static std::string shellOf(const Environment& environment);

    /// Sessions started before it has ended build their own environment.
    const LoginCapture& loginCapture() const { return loginCapture_; }

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override;

 private:
    std::expected<LaunchPlan, LaunchPlan::Error> planFor(const SessionController& session) const;

    Setup setup_;
    LoopThread reader_;
    std::string locale_;
    std::vector<std::string> toolFolders_;
    LoginCapture loginCapture_;
};

}  // namespace orvane
