#pragma once

#include <optional>
#include <string>

#include "OrvaneCore/Agents/EnvironmentList.h"
#include "OrvaneCore/Agents/LaunchPlan.h"

namespace orvane {

class SessionController;

/// What other services add to the launch of one session; each as `LaunchRequest` tells of it.
struct LaunchAdditions {
    EnvironmentEntries browserVariables;
    std::string browserPrompt;
    std::string mcpInjection;
    std::optional<LaunchHookFeed> hookFeed;
};

/// Asked right before a session's program is started. Main thread only; must not block.
class LaunchSupport {
 public:
    LaunchSupport() = default;
    LaunchSupport(const LaunchSupport&) = delete;
    LaunchSupport& operator=(const LaunchSupport&) = delete;
    virtual ~LaunchSupport() = default;

    virtual LaunchAdditions additions(const SessionController& session) = 0;
};

}  // namespace orvane
