#pragma once

#include <expected>
#include <memory>

#include "Orvane/Agents/LaunchSupport.h"
#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/SessionProcess.h"
#include "Orvane/Agents/ShellSetup.h"
#include "OrvaneCore/Agents/LaunchPlan.h"
#include "Platform/LoopThread.h"

namespace orvane {

/// Starts the programs of sessions on terminals, in the environment that the user's own terminal would give them.
class TerminalLauncher final : public SessionLauncher {
 public:
    /// All of them must outlive it, and it the sessions.
    struct Setup {
        MainLoop& loop;
        LaunchSupport& support;
        const ShellSetup& shell;
        /// Sessions started before it has ended build their own environment.
        const LoginCapture& login;
    };

    explicit TerminalLauncher(const Setup& setup) : setup_(setup) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override;

 private:
    std::expected<LaunchPlan, LaunchPlan::Error> planFor(const SessionController& session) const;

    Setup setup_;
    LoopThread reader_;
};

}  // namespace orvane
