#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "OrvaneCore/Agents/AgentTool.h"
#include "OrvaneCore/Support/Paths.h"

/// Whether a tool is signed in, told by what it leaves behind when it is. Nothing is run for it.
namespace orvane::ToolAuth {

/// The name of the secret that Claude Code keeps where the system has a store for secrets.
inline constexpr std::string_view claudeSecret = "Claude Code-credentials";

enum class Secret { absent, present };

/// What is there. An environment variable that is empty counts as not set.
struct Evidence {
    std::string home;
    PathTest fileExists;
    std::function<bool(const std::string& name)> isVariableSet;
    /// Whether the store for secrets holds `claudeSecret`.
    Secret secret = Secret::absent;
};

/// `connected` or `notConnected`, the latter for an id that no tool has.
AuthState state(std::string_view toolID, const Evidence& evidence);

}  // namespace orvane::ToolAuth
