#pragma once

#include <string>

#include "Orvane/Agents/AgentConfigService.h"
#include "Orvane/Agents/LaunchSupport.h"

namespace orvane {

/// Gives every Claude a file for its hooks, which its session then reads.
class AgentLaunchSupport final : public LaunchSupport {
 public:
    /// `temporaryFolder` is the user's own; without one there are no hooks.
    AgentLaunchSupport(std::string home, std::string temporaryFolder)
        : config_(std::move(home)), temporaryFolder_(std::move(temporaryFolder)) {}

    LaunchAdditions additions(const SessionController& session) override;

 private:
    AgentConfigService config_;
    std::string temporaryFolder_;
};

}  // namespace orvane
