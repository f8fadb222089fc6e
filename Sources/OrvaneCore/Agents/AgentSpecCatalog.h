#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/AgentSpec.h"

/// Lists of agents: those we suggest, and the user's own, which are kept in one file.
namespace orvane::AgentSpecCatalog {

/// The built-in suggestions, each with a fresh id.
std::vector<AgentSpec> presets();

/// The preset that goes by this name or whose program is called so, in any case.
std::optional<AgentSpec> preset(std::string_view name);

/// The presets of which `specs` has neither the name nor the command.
std::vector<AgentSpec> presetsMissing(const std::vector<AgentSpec>& specs);

/// A JSON array.
JsonValue encode(const std::vector<AgentSpec>& specs);

/// Skips the entries that do not decode. An id that repeats is replaced by a fresh one. What is no array is an empty
/// list.
std::vector<AgentSpec> decode(const JsonValue& json);

}  // namespace orvane::AgentSpecCatalog
