#pragma once

#include <string>
#include <vector>

#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// A command-line agent that the user added.
struct AgentSpec {
    Uuid id;
    std::string name;
    /// The shell command line that starts it.
    std::string command;
    /// Name of its icon.
    std::string symbol;
    /// Six hex digits without a prefix.
    std::string colorHex;
    /// Regular expressions over the screen that mean "working" and "needs the user".
    std::vector<std::string> busyPatterns;
    std::vector<std::string> waitingPatterns;

    bool operator==(const AgentSpec&) const = default;
};

}  // namespace orvane
