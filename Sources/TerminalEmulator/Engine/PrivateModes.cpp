#include "TerminalEmulator/Engine/PrivateModes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "TerminalEmulator/Terminal.h"

namespace orvane::PrivateModes {
namespace {

using ModeFunctions::Switch;

using Flag = bool TerminalModes::*;

template <Flag flag>
void setFlag(TerminalState& state, Switch to) {
    state.modes.*flag = to == Switch::on;
}

template <Flag flag>
bool isFlag(const TerminalState& state) {
    return state.modes.*flag;
}

template <Flag flag>
constexpr Mode flagMode(int number) {
    return {number, setFlag<flag>, isFlag<flag>};
}

/// DECANM. There is no VT52 here to go to, so only the character sets change.
void setAnsiMode(TerminalState& state, Switch to) {
    if (to == Switch::on) state.charsets.gCharsets.fill(Charset::ascii);
}

void resetMargins(TerminalState& state) {
    state.buffer->setMarginLeft(0);
    state.buffer->setMarginRight(state.cols() - 1);
}

/// DECCOLM.
void setColumnMode(TerminalState& state, Switch to) {
    if (!state.modes.allow80To132) return;
    state.modes.is132Columns = to == Switch::on;
    const int cols = to == Switch::on ? TerminalState::wideColumns : TerminalState::narrowColumns;
    state.resizeForProgram(cols, state.rows());
    state.modes.marginMode = false;
    resetMargins(state);
    state.buffer->setScrollTop(0);
    state.buffer->setScrollBottom(state.rows() - 1);
    state.placeCursor(0, 0);
    if (!state.modes.keepsScreenOnColumnMode) state.clearScreen(*state.buffer);
}

/// DECNCSM.
void setKeepsScreen(TerminalState& state, Switch to) {
    if (state.conformance == TerminalConformance::vt500) setFlag<&TerminalModes::keepsScreenOnColumnMode>(state, to);
}

void setReverseVideo(TerminalState& state, Switch to) {
    setFlag<&TerminalModes::reverseVideo>(state, to);
    state.markAll();
}

void setOriginMode(TerminalState& state, Switch to) {
    setFlag<&TerminalModes::originMode>(state, to);
    state.moveTo(0, 0);
}

/// The styles come in pairs, the blinking one first.
void setCursorBlink(TerminalState& state, Switch to) {
    setFlag<&TerminalModes::cursorBlink>(state, to);
    const unsigned pair = std::to_underlying(state.cursorStyle) & ~1U;
    state.cursorStyle = static_cast<CursorStyle>(pair | (to == Switch::on ? 0U : 1U));
    state.delegate.cursorStyleChanged(state.cursorStyle);
}

void setCursorShown(TerminalState& state, Switch to) {
    const bool isHidden = to == Switch::off;
    if (std::exchange(state.modes.cursorHidden, isHidden) == isHidden) return;
    if (isHidden) {
        state.delegate.hideCursor();
    } else {
        state.delegate.showCursor();
    }
}

bool isCursorShown(const TerminalState& state) {
    return !state.modes.cursorHidden;
}

/// DECLRMM. Rows of double width and margins do not go together (VT510 programmer information, DECLRMM).
void setMarginMode(TerminalState& state, Switch to) {
    if (state.conformance < TerminalConformance::vt400) return;
    setFlag<&TerminalModes::marginMode>(state, to);
    if (to == Switch::off) {
        resetMargins(state);
        return;
    }
    for (int y = 0; y < state.rows(); ++y) {
        BufferLine line = state.buffer->line(y);
        if (line.renderMode() == RenderLineMode::single) continue;
        line.setRenderMode(RenderLineMode::single);
        state.markRow(y);
    }
}

template <MouseMode mode>
void setMouse(TerminalState& state, Switch to) {
    const MouseMode wanted = to == Switch::on ? mode : MouseMode::off;
    if (std::exchange(state.modes.mouseMode, wanted) != wanted) state.delegate.mouseModeChanged();
}

template <MouseMode mode>
constexpr Mode mouseMode(int number) {
    return {number, setMouse<mode>, [](const TerminalState& state) { return state.modes.mouseMode == mode; }};
}

/// Resetting a protocol that another one has replaced leaves that one.
template <MouseProtocol protocol>
void setProtocol(TerminalState& state, Switch to) {
    if (to == Switch::on) {
        state.modes.mouseProtocol = protocol;
    } else if (state.modes.mouseProtocol == protocol) {
        state.modes.mouseProtocol = MouseProtocol::x10;
    }
}

template <MouseProtocol protocol>
constexpr Mode protocolMode(int number) {
    return {number, setProtocol<protocol>,
            [](const TerminalState& state) { return state.modes.mouseProtocol == protocol; }};
}

void setAlternate(TerminalState& state, Switch to) {
    state.activate(to == Switch::on ? state.altBuffer : state.normalBuffer);
}

/// 1047: what stands on the alternate screen is gone when it is left.
void setAlternateCleared(TerminalState& state, Switch to) {
    if (to == Switch::off && state.isAlternate()) state.clearScreen(state.altBuffer);
    setAlternate(state, to);
}

void setCursorSaved(TerminalState& state, Switch to) {
    if (to == Switch::on) {
        state.saveCursor();
    } else {
        state.restoreCursor();
    }
}

bool isCursorSaved(const TerminalState& state) {
    return state.buffer->saved != Buffer::SavedCursor{};
}

/// 1049: 1047 and 1048 together, cleared on the way in.
void setAlternateWithCursor(TerminalState& state, Switch to) {
    if (to == Switch::on) {
        state.saveCursor();
        state.activate(state.altBuffer);
        state.clearScreen(state.altBuffer);
    } else {
        state.activate(state.normalBuffer);
        state.restoreCursor();
    }
}

bool isAlternate(const TerminalState& state) {
    return state.isAlternate();
}

void endSynchronizedOutput(TerminalState& state) {
    if (!std::exchange(state.modes.synchronizedOutputActive, false)) return;
    if (state.timer) state.timer->stop();
    state.delegate.synchronizedOutputChanged(false);
}

/// The timer ends what a program has begun and does not end, so that it cannot freeze the view.
void setSynchronizedOutput(TerminalState& state, Switch to) {
    if (to == Switch::off) {
        endSynchronizedOutput(state);
        return;
    }
    if (state.timer) {
        state.timer->start(Terminal::synchronizedOutputTimeoutSeconds, [&state] { endSynchronizedOutput(state); });
    }
    if (!std::exchange(state.modes.synchronizedOutputActive, true)) state.delegate.synchronizedOutputChanged(true);
}

using M = TerminalModes;

// In rising order.
constexpr Mode modes[] = {
    flagMode<&M::applicationCursor>(1),  // DECCKM
    {2, setAnsiMode, [](const TerminalState& /*state*/) { return true; }},
    {3, setColumnMode, isFlag<&M::is132Columns>},
    flagMode<&M::smoothScroll>(4),  // DECSCLM
    {5, setReverseVideo, isFlag<&M::reverseVideo>},
    {6, setOriginMode, isFlag<&M::originMode>},
    flagMode<&M::wraparound>(7),  // DECAWM
    mouseMode<MouseMode::x10>(9),
    {12, setCursorBlink, isFlag<&M::cursorBlink>},
    {25, setCursorShown, isCursorShown},
    flagMode<&M::allow80To132>(40),
    flagMode<&M::reverseWraparound>(45),
    {47, setAlternate, isAlternate},
    flagMode<&M::applicationKeypad>(66),  // DECNKM
    {69, setMarginMode, isFlag<&M::marginMode>},
    {95, setKeepsScreen, isFlag<&M::keepsScreenOnColumnMode>},
    mouseMode<MouseMode::vt200>(1000),
    mouseMode<MouseMode::buttonEventTracking>(1002),
    mouseMode<MouseMode::anyEvent>(1003),
    flagMode<&M::sendFocus>(1004),
    protocolMode<MouseProtocol::utf8>(1005),
    protocolMode<MouseProtocol::sgr>(1006),
    protocolMode<MouseProtocol::urxvt>(1015),
    protocolMode<MouseProtocol::sgrPixel>(1016),
    flagMode<&M::extendedReverseWraparound>(1045),
    {1047, setAlternateCleared, isAlternate},
    {1048, setCursorSaved, isCursorSaved},
    {1049, setAlternateWithCursor, isAlternate},
    flagMode<&M::bracketedPasteMode>(2004),
    {2026, setSynchronizedOutput, isFlag<&M::synchronizedOutputActive>},
};

static_assert(std::ranges::is_sorted(modes, {}, &Mode::number));

}  // namespace

const Mode* find(int number) {
    const auto* found = std::ranges::lower_bound(modes, number, {}, &Mode::number);
    return found != std::end(modes) && found->number == number ? found : nullptr;
}

}  // namespace orvane::PrivateModes
