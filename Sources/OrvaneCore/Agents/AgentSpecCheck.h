#pragma once

#include <expected>
#include <string>
#include <variant>
#include <vector>

#include "OrvaneCore/Agents/AgentSpec.h"

/// Brings an agent that somebody described into the form in which it is kept, or says what is wrong with it.
namespace orvane::AgentSpecCheck {

struct InvalidColor {
    std::string text;

    bool operator==(const InvalidColor&) const = default;
};

struct InvalidPattern {
    std::string pattern;
    std::string reason;  ///< one English sentence of the library, without its final stop

    bool operator==(const InvalidPattern&) const = default;
};

/// No program can be given one.
struct NulInCommand {
    bool operator==(const NulInCommand&) const = default;
};

using Error = std::variant<AgentSpec::ValidationError, InvalidColor, InvalidPattern, NulInCommand>;

/// The agent with a name of one line, a command without white space at its ends, a colour of six digits or none, and
/// no empty patterns. The one of `existing` that has its id is the agent as it was before an edit.
std::expected<AgentSpec, Error> checked(AgentSpec spec, const std::vector<AgentSpec>& existing);

}  // namespace orvane::AgentSpecCheck
