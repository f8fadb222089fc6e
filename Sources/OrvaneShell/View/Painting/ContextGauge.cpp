#include "OrvaneShell/View/Painting/ContextGauge.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "OrvaneCore/Agents/ModelName.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::ContextGauge {

namespace {

constexpr int barCols = 5;
/// Of a column.
constexpr int steps = 8;

std::string bar(double fraction) {
    static constexpr std::array<std::string_view, steps> parts = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const int filled = static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * barCols * steps));
    std::string text = "▕";
    for (int col = 0; col < filled / steps; ++col)
        text += "█";
    const std::string_view part = parts.at(static_cast<std::size_t>(filled % steps));
    text += part;
    const int used = filled / steps + (part.empty() ? 0 : 1);
    return text + std::string(static_cast<std::size_t>(barCols - used), ' ') + "▏";
}

}  // namespace

Facts of(TerminalAgent& agent) {
    Facts facts{.model = agent.controls().settings().modelName.value_or(""), .fraction = {}};
    if (const auto use = agent.contextUse()) facts.fraction = use->fraction;
    return facts;
}

std::vector<std::string> forms(const Facts& facts) {
    const std::string model = facts.model.empty() ? std::string() : Text::oneLine(ModelName::display(facts.model));
    if (!facts.fraction) return model.empty() ? std::vector<std::string>() : std::vector{model};
    // Rounded down: "100%" is full.
    const std::string percent = std::to_string(static_cast<int>(std::clamp(*facts.fraction, 0.0, 1.0) * 100)) + "%" +
                                (facts.isWarning() ? "!" : "");
    if (model.empty()) return {bar(*facts.fraction) + " " + percent, percent};
    return {model + " " + bar(*facts.fraction) + " " + percent, model + " " + percent, percent};
}

}  // namespace orvane::ContextGauge
