// Finds what a scenario names but does not have, so that a test fails for its own mistake at once.

#include <optional>
#include <set>

#include "ScriptedAgent/Placeholders.h"
#include "ScriptedAgent/ScenarioParser.h"

namespace orvane::scripted {
namespace {

class Check {
 public:
    Check(const Scenario& scenario, const std::string& file) : scenario_(scenario), file_(file) {}

    std::optional<ScenarioError> run() {
        if (!scenario_.states.contains("start")) return fault({file_, 0}, "there is no state “start”");
        for (const std::string& text : {scenario_.received, scenario_.lostReturns}) {
            if (auto error = checkText(text, {file_, 0})) return error;
        }
        for (const auto& [name, rows] : scenario_.texts) {
            if (auto error = checkRows(rows)) return error;
        }
        for (const auto& [name, state] : scenario_.states) {
            if (auto error = checkState(name, state)) return error;
        }
        return {};
    }

 private:
    static std::optional<ScenarioError> fault(const Place& place, const std::string& text) {
        return ScenarioError{place, text};
    }

    std::optional<ScenarioError> checkState(const std::string& name, const State& state) {
        std::set<std::string> seen = {name};
        for (std::string base = state.base; !base.empty(); base = scenario_.states.at(base).base) {
            if (!scenario_.states.contains(base)) return fault(state.place, "there is no state “" + base + "”");
            if (!seen.insert(base).second) return fault(state.place, "“" + name + "” is its own base");
        }
        if (!state.view.empty() && !scenario_.texts.contains(state.view))
            return fault(state.place, "there is no text “" + state.view + "”");
        if (auto error = checkText(state.title, state.place)) return error;
        if (auto error = checkText(state.guard, state.place)) return error;
        for (const Reaction& reaction : state.reactions) {
            if (reaction.trigger.kind == Trigger::Kind::after) {
                if (auto error = checkText(reaction.trigger.what, state.place)) return error;
            }
            for (const Action& action : reaction.actions) {
                if (auto error = checkAction(action)) return error;
            }
        }
        return {};
    }

    std::optional<ScenarioError> checkAction(const Action& action) {
        if (action.verb == Verb::go && !scenario_.states.contains(action.name))
            return fault(action.place, "there is no state “" + action.name + "”");
        if (action.verb == Verb::print && !scenario_.texts.contains(action.name))
            return fault(action.place, "there is no text “" + action.name + "”");
        if (action.verb == Verb::let && !scenario_.variables.contains(action.name))
            return fault(action.place, "“" + action.name + "” was given no value at the start");
        for (const std::string& text : {action.name, action.text}) {
            if (auto error = checkText(text, action.place)) return error;
        }
        return checkRows(action.rows);
    }

    std::optional<ScenarioError> checkRows(const Rows& rows) {
        for (const Row& row : rows) {
            for (const Condition& condition : row.conditions) {
                if (!isKnownPlaceholder(scenario_, condition.name))
                    return fault(row.place, "“" + condition.name + "” has no value");
            }
            if (row.isGap) continue;
            if (auto error = checkText(row.text, row.place)) return error;
        }
        return {};
    }

    std::optional<ScenarioError> checkText(const std::string& text, const Place& place) {
        for (const std::string& name : placeholdersOf(text)) {
            if (!isKnownPlaceholder(scenario_, name)) return fault(place, "{" + name + "} has no value");
        }
        return {};
    }

    const Scenario& scenario_;
    const std::string& file_;
};

}  // namespace

std::expected<void, ScenarioError> checkScenario(const Scenario& scenario, const std::string& file) {
    if (auto error = Check(scenario, file).run()) return std::unexpected(std::move(*error));
    return {};
}

}  // namespace orvane::scripted
