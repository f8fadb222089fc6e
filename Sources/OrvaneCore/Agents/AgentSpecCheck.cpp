#include "OrvaneCore/Agents/AgentSpecCheck.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane::AgentSpecCheck {

namespace {

std::vector<AgentSpec> others(const std::vector<AgentSpec>& existing, const Uuid& id) {
    std::vector<AgentSpec> specs;
    std::ranges::copy_if(existing, std::back_inserter(specs), [&](const AgentSpec& each) { return each.id != id; });
    return specs;
}

std::optional<InvalidPattern> firstInvalid(const std::vector<std::string>& patterns) {
    for (const std::string& pattern : patterns) {
        if (auto compiled = Regex::compile(pattern); !compiled) {
            return InvalidPattern{.pattern = pattern, .reason = std::move(compiled.error().message)};
        }
    }
    return std::nullopt;
}

}  // namespace

std::expected<AgentSpec, Error> checked(AgentSpec spec, const std::vector<AgentSpec>& existing) {
    spec.name = Text::oneLine(spec.name);
    spec.command = Text::trimmed(spec.command);
    spec.symbol = Text::oneLine(spec.symbol);
    if (const auto error = AgentSpec::validate(spec.name, spec.command, others(existing, spec.id))) {
        return std::unexpected(*error);
    }
    if (spec.command.contains('\0')) return std::unexpected(NulInCommand());
    if (!spec.colorHex.empty()) {
        auto color = ProjectPalette::colorHex(spec.colorHex);
        if (!color) return std::unexpected(InvalidColor{std::move(spec.colorHex)});
        spec.colorHex = *std::move(color);
    }
    for (std::vector<std::string>* patterns : {&spec.busyPatterns, &spec.waitingPatterns}) {
        // An empty one would match every screen.
        std::erase(*patterns, "");
        if (auto invalid = firstInvalid(*patterns)) return std::unexpected(*std::move(invalid));
    }
    return spec;
}

}  // namespace orvane::AgentSpecCheck
