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
        /// Rows of history of each new terminal.
        int scrollback = defaultScrollback;
    };
    /// Much of what an agent writes in a day, and some megabytes when it is full.
    static constexpr int defaultScrollback = 5000;

    explicit TerminalLauncher(const Setup& setup) : setup_(setup) {}

    /// For those that are started from now on.
    void setScrollback(int rows) { setup_.scrollback = rows; }

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override;

 private:
    std::expected<LaunchPlan, LaunchPlan::Error> planFor(const SessionController& session) const;

    Setup setup_;
    LoopThread reader_;
};

}  // namespace orvane
