#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/SessionProcess.h"
#include "Platform/Environment.h"
#include "Platform/LoopThread.h"

namespace orvane {

/// Starts the programs of sessions on terminals, in the environment that the user's own terminal would give them.
class TerminalLauncher final : public SessionLauncher {
 public:
    /// The loop must outlive it, and it the sessions.
    TerminalLauncher(MainLoop& loop, const Environment& environment);

    std::unique_ptr<SessionProcess> launch(const SessionController& session, SessionProcessEvents events) override;

 private:
    MainLoop& loop_;
    LoopThread reader_;
    std::string shell_;
    std::string locale_;
    std::vector<std::string> toolFolders_;
    LoginCapture loginCapture_;
};

}  // namespace orvane
