#include "ScriptedAgent/CommandLine.h"

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {

std::expected<Invocation, std::string> readInvocation(const std::vector<std::string>& words,
                                                      const std::optional<std::string>& scenario,
                                                      const std::optional<std::string>& settings) {
    Invocation result;
    if (words.empty() || words[0] != "--scenario") {
        if (!scenario) return std::unexpected("neither --scenario nor ORVANE_TEST_SCENARIO tells what to play");
        result.scenario = *scenario;
        result.arguments = words;
        if (settings && !settings->empty()) result.settings = split(*settings, '\n');
        return result;
    }
    std::size_t next = 0;
    for (; next < words.size() && words[next] != "--"; next += 2) {
        const bool isSetting = words[next] == "--set";
        if (!isSetting && words[next] != "--scenario") return std::unexpected("what is “" + words[next] + "”?");
        if (next + 1 == words.size()) return std::unexpected(words[next] + " needs a value");
        if (isSetting) {
            result.settings.push_back(words[next + 1]);
        } else {
            result.scenario = words[next + 1];
        }
    }
    if (next < words.size())
        result.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(next) + 1, words.end());
    return result;
}

std::expected<Start, std::string> applyInvocation(Scenario& scenario, const Invocation& invocation) {
    for (const std::string& setting : invocation.settings) {
        const std::size_t sign = setting.find('=');
        const auto variable = scenario.variables.find(setting.substr(0, sign));
        if (sign == std::string::npos || variable == scenario.variables.end())
            return std::unexpected("the scenario has no variable for “" + setting + "”");
        variable->second = setting.substr(sign + 1);
    }
    Start start;
    const std::vector<std::string>& words = invocation.arguments;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const auto known = scenario.arguments.find(words[index]);
        if (known != scenario.arguments.end() && known->second.variable.empty()) {
            start.answer = {.text = known->second.answer, .status = known->second.status};
        } else if (known != scenario.arguments.end()) {
            if (++index == words.size()) return std::unexpected(words[index - 1] + " needs a value");
            scenario.variables[known->second.variable] = words[index];
        } else if (scenario.positional == Positional::prompt && index + 1 == words.size() &&
                   !words[index].starts_with('-')) {
            start.prompt = words[index];
        }
    }
    return start;
}

}  // namespace orvane::scripted
