#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

struct ScenarioError {
    Place place;
    std::string text;

    std::string message() const { return place.file + ":" + std::to_string(place.line) + ": " + text; }
};

/// Reads a scenario with all it includes; the grammar is in Tests/Agents/README.md.
std::expected<Scenario, ScenarioError> parseScenario(const std::string& path);

/// What a scenario names must be there: states, texts, placeholders.
std::expected<void, ScenarioError> checkScenario(const Scenario& scenario, const std::string& file);

}  // namespace orvane::scripted
