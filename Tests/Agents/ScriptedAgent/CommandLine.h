#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

/// What the command line and the environment of the program ask for.
struct Invocation {
    std::string scenario;                ///< path
    std::vector<std::string> settings;   ///< NAME=VALUE
    std::vector<std::string> arguments;  ///< the agent's own
};

/// `scripted-agent --scenario FILE [--set NAME=VALUE]… [-- ARGUMENT…]`; or, to be started under an agent's name with
/// that agent's arguments, ORVANE_TEST_SCENARIO=FILE and ORVANE_TEST_SCENARIO_SET with one NAME=VALUE a line.
std::expected<Invocation, std::string> readInvocation(const std::vector<std::string>& words,
                                                      const std::optional<std::string>& scenario,
                                                      const std::optional<std::string>& settings);

struct Answer {
    std::string text;
    int status = 0;
};

/// What the agent's own arguments come to.
struct Start {
    std::string prompt;
    std::optional<Answer> answer;  ///< instead of playing, as for --version
};

/// Puts settings and values of arguments into the scenario's variables.
std::expected<Start, std::string> applyInvocation(Scenario& scenario, const Invocation& invocation);

}  // namespace orvane::scripted
