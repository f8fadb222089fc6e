#pragma once

#include <vector>

#include "OrvaneCore/Agents/AgentSpec.h"

/// Lists of agents: those we suggest, and the user's own, which are kept in one file.
namespace orvane::AgentSpecCatalog {

/// The built-in suggestions, each with a fresh id.
std::vector<AgentSpec> presets();

/// A JSON array.
JsonValue encode(const std::vector<AgentSpec>& specs);

/// Skips the entries that do not decode. An id that repeats is replaced by a fresh one. What is no array is an empty
/// list.
std::vector<AgentSpec> decode(const JsonValue& json);

}  // namespace orvane::AgentSpecCatalog
