#include "TerminalEmulator/Engine/ModeFunctions.h"

#include <fmt/format.h>

#include <optional>

#include "TerminalEmulator/Engine/PrivateModes.h"

namespace orvane::ModeFunctions {
namespace {

// What DECRPM answers beside the states of held modes.
constexpr int unknownMode = 0;
constexpr int modeIsSet = 1;
constexpr int modeIsReset = 2;

Switch switchOf(bool isOn) {
    return isOn ? Switch::on : Switch::off;
}

bool TerminalModes::* ansiFlag(int mode) {
    switch (mode) {
        case 4:
            return &TerminalModes::insertMode;  // IRM
        case 20:
            return &TerminalModes::lineFeedMode;  // LNM
        default:
            return nullptr;
    }
}

int ansiState(const TerminalState& state, int mode) {
    if (const auto flag = ansiFlag(mode)) return state.modes.*flag ? modeIsSet : modeIsReset;
    return state.heldModes.ansiState(mode).value_or(unknownMode);
}

int privateState(const TerminalState& state, int mode) {
    if (const auto* known = PrivateModes::find(mode)) return known->isOn(state) ? modeIsSet : modeIsReset;
    return state.heldModes.privateState(mode).value_or(unknownMode);
}

/// False for a mode that is not known.
[[nodiscard]] bool setOnePrivate(TerminalState& state, int mode, Switch to) {
    if (const auto* known = PrivateModes::find(mode)) {
        known->set(state, to);
        return true;
    }
    return state.heldModes.setPrivate(mode, to == Switch::on);
}

}  // namespace

void setAnsi(TerminalState& state, const ParserParameters& parameters, Switch to) {
    for (const std::int32_t mode : parameters.values) {
        if (const auto flag = ansiFlag(mode)) {
            state.modes.*flag = to == Switch::on;
        } else if (!state.heldModes.setAnsi(mode, to == Switch::on)) {
            state.log(to == Switch::on ? "Unhandled ANSI Mode Set (SM) with " : "Unhandled ANSI Mode Reset (RM) with ",
                      std::to_string(mode));
        }
    }
}

void setPrivate(TerminalState& state, const ParserParameters& parameters, Switch to) {
    for (const std::int32_t mode : parameters.values) {
        if (setOnePrivate(state, mode, to)) continue;
        state.log(to == Switch::on ? "Unhandled DEC Private Mode Set (DECSET) with "
                                   : "Unhandled DEC Private Mode Reset (DECRST) with ",
                  std::to_string(mode));
    }
}

void reportAnsi(TerminalState& state, const ParserParameters& parameters) {
    if (state.conformance < TerminalConformance::vt300) return;
    const std::int32_t mode = parameters.values[0];
    state.sendCsi(fmt::format("{};{}$y", mode, ansiState(state, mode)));
}

void reportPrivate(TerminalState& state, const ParserParameters& parameters) {
    if (state.conformance < TerminalConformance::vt300) return;
    const std::int32_t mode = parameters.values[0];
    state.sendCsi(fmt::format("?{};{}$y", mode, privateState(state, mode)));
}

void savePrivate(TerminalState& state, const ParserParameters& parameters) {
    for (const std::int32_t mode : parameters.values) {
        const int now = privateState(state, mode);
        if (now == modeIsSet || now == modeIsReset) state.heldModes.savedPrivateModes[mode] = now == modeIsSet;
    }
}

/// A mode that is as it was saved is not set again: setting some of them moves the cursor or ends another mode.
void restorePrivate(TerminalState& state, const ParserParameters& parameters) {
    for (const std::int32_t mode : parameters.values) {
        const auto saved = state.heldModes.savedPrivateModes.find(mode);
        if (saved == state.heldModes.savedPrivateModes.end()) continue;
        const bool isOn = saved->second;
        if ((privateState(state, mode) == modeIsSet) == isOn) continue;
        static_cast<void>(setOnePrivate(state, mode, switchOf(isOn)));
    }
}

}  // namespace orvane::ModeFunctions
