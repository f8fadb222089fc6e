#include "TerminalEmulator/Engine/KeyboardFunctions.h"

#include <fmt/format.h>

#include <optional>

namespace orvane::KeyboardFunctions {
namespace {

/// Disambiguate, event types, alternate keys, all keys as escape codes, associated text.
constexpr int knownFlags = 0x1F;

std::optional<std::size_t> optionOf(std::int32_t number) {
    const bool isOption = number >= 0 && number <= 4 && number != 3;
    return isOption ? std::optional(static_cast<std::size_t>(number)) : std::nullopt;
}

}  // namespace

void push(TerminalState& state, const ParserParameters& parameters) {
    KeyboardModeState& keyboard = state.keyboardMode();
    if (keyboard.stack.size() == KeyboardModeState::maximumStack) keyboard.stack.erase(keyboard.stack.begin());
    keyboard.stack.push_back(keyboard.flags);
    keyboard.flags = parameters.values[0] & knownFlags;
}

/// Popping more than was pushed leaves no enhancement on.
void pop(TerminalState& state, const ParserParameters& parameters) {
    KeyboardModeState& keyboard = state.keyboardMode();
    const auto count = static_cast<std::size_t>(parameters.valueOr(0, 1));
    if (count > keyboard.stack.size()) {
        keyboard = {};
        return;
    }
    keyboard.flags = keyboard.stack[keyboard.stack.size() - count];
    keyboard.stack.resize(keyboard.stack.size() - count);
}

void set(TerminalState& state, const ParserParameters& parameters) {
    int& flags = state.keyboardMode().flags;
    const int given = parameters.values[0] & knownFlags;
    switch (parameters.valueOr(1, 1)) {
        case 1:
            flags = given;
            break;
        case 2:
            flags |= given;
            break;
        case 3:
            flags &= ~given;
            break;
        default:
            break;
    }
}

void report(TerminalState& state, const ParserParameters& /*parameters*/) {
    state.sendCsi(fmt::format("?{}u", state.keyboardMode().flags));
}

void setModifiers(TerminalState& state, const ParserParameters& parameters) {
    KeyModifierOptions& options = state.heldModes.keyModifiers;
    const std::int32_t number = parameters.values[0];
    // "CSI > m" resets all of them; the parser does not tell it from "CSI > 0 m", which resets the first.
    if (parameters.size() == 1 && number == 0) options = {};
    const auto option = optionOf(number);
    if (!option) return;
    if (parameters.size() == 1) {
        options.values[*option] = KeyModifierOptions::initial[*option];
    } else if (parameters.values[1] <= KeyModifierOptions::greatest) {
        options.values[*option] = parameters.values[1];
    }
}

/// Left out, it is the function keys.
void disableModifiers(TerminalState& state, const ParserParameters& parameters) {
    if (const auto option = optionOf(parameters.valueOr(0, 2)))
        state.heldModes.keyModifiers.values[*option] = KeyModifierOptions::disabled;
}

/// The answer is the control function that would set it as it is.
void reportModifiers(TerminalState& state, const ParserParameters& parameters) {
    const auto option = optionOf(parameters.values[0]);
    if (!option) return;
    const std::int32_t value = state.heldModes.keyModifiers.values[*option];
    state.sendCsi(value == KeyModifierOptions::disabled ? fmt::format(">{}n", *option)
                                                        : fmt::format(">{};{}m", *option, value));
}

}  // namespace orvane::KeyboardFunctions
