#include "TerminalEmulator/Engine/StatusStringRequest.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "TerminalEmulator/Engine/SgrText.h"

namespace orvane {
namespace {

/// DECSCL. Level 1 has no choice of answers with 8 bits.
std::string conformance(const TerminalState& state) {
    const int level = 60 + std::to_underlying(state.conformance);
    return level == 61 ? "61" : fmt::format("{};{}", level, state.send8bit ? 0 : 1);
}

std::string region(const TerminalState& state) {
    return fmt::format("{};{}", state.buffer->scrollTop() + 1, state.buffer->scrollBottom() + 1);
}

std::string margins(const TerminalState& state) {
    return fmt::format("{};{}", state.leftMargin() + 1, state.rightMargin() + 1);
}

std::string rows(const TerminalState& state) {
    return std::to_string(state.rows());
}

std::string none(const TerminalState& /*state*/) {
    return "0";
}

struct Setting {
    std::string_view function;
    std::string (*value)(const TerminalState& state);
};

constexpr Setting settings[] = {
    {"m", [](const TerminalState& state) { return sgrText(state.buffer->pen.attribute()); }},
    {"r", region},                                                                    // DECSTBM
    {"s", margins},                                                                   // DECSLRM
    {"t", rows},                                                                      // DECSLPP
    {"*|", rows},                                                                     // DECSNLS
    {"$|", [](const TerminalState& state) { return std::to_string(state.cols()); }},  // DECSCPP
    {" q", [](const TerminalState& state) { return std::to_string(std::to_underlying(state.cursorStyle) + 1); }},
    {"\"q", [](const TerminalState& state) { return std::string(state.buffer->pen.isProtected() ? "1" : "0"); }},
    {"\"p", conformance},
    {"*x",
     [](const TerminalState& state) {
         return std::string(state.attributeExtent == TerminalState::AttributeExtent::rectangle ? "2" : "1");
     }},
    {"$}", none},  // DECSASD: the main display, for there is no status line
    {"$~", none},  // DECSSDT
};

}  // namespace

void StatusStringRequest::answer(std::string_view data) {
    const auto* setting = std::ranges::find(settings, data, &Setting::function);
    if (setting == std::end(settings)) {
        state.sendDcs("0$r");
    } else {
        state.sendDcs(fmt::format("1$r{}{}", setting->value(state), data));
    }
}

}  // namespace orvane
