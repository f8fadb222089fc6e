#include "TerminalEmulator/Engine/InputReports.h"

#include <optional>
#include <string>

namespace orvane::InputReports {

namespace {

constexpr int noButton = 3;
constexpr int firstWheelButton = 4;
constexpr int wheelFlag = 0x40;

/// One number of the protocols that send characters. 33 is column 0; with UTF-8 two bytes are the most.
std::optional<std::string> character(int value, MouseProtocol protocol) {
    const int limit = protocol == MouseProtocol::utf8 ? 0x7FF : 0xFF;
    if (value > limit) return {};
    if (protocol != MouseProtocol::utf8 || value < 0x80) return std::string(1, static_cast<char>(value));
    return std::string{static_cast<char>(0xC0 | value >> 6), static_cast<char>(0x80 | (value & 0x3F))};
}

void sendCharacters(TerminalState& state, int flags, int x, int y) {
    const MouseProtocol protocol = state.modes.mouseProtocol;
    const auto button = character(flags + 32, protocol);
    const auto col = character(x + 33, protocol);
    const auto row = character(y + 33, protocol);
    if (button && col && row) state.sendCsi("M" + *button + *col + *row);
}

void send(TerminalState& state, int flags, const MousePlace& place) {
    const bool isRelease = (flags & releaseFlag) != 0;
    flags &= ~releaseFlag;
    const auto numbers = [](int first, int x, int y) {
        return std::to_string(first) + ';' + std::to_string(x + 1) + ';' + std::to_string(y + 1);
    };
    switch (state.modes.mouseProtocol) {
        case MouseProtocol::x10:
        case MouseProtocol::utf8:
            sendCharacters(state, flags, place.x, place.y);
            break;
        case MouseProtocol::sgr:
            state.sendCsi('<' + numbers(flags, place.x, place.y) + (isRelease ? 'm' : 'M'));
            break;
        case MouseProtocol::sgrPixel:
            state.sendCsi('<' + numbers(flags, place.pixelX, place.pixelY) + (isRelease ? 'm' : 'M'));
            break;
        case MouseProtocol::urxvt:
            state.sendCsi(numbers(flags + 32, place.x, place.y) + 'M');
            break;
    }
}

}  // namespace

int encodeButton(const TerminalState& state, int button, Edge edge, Modifiers modifiers) {
    const MouseProtocol protocol = state.modes.mouseProtocol;
    const bool tellsWhich = protocol == MouseProtocol::sgr || protocol == MouseProtocol::sgrPixel;
    int flags = button < firstWheelButton ? button : wheelFlag + button - firstWheelButton;
    if (edge == Edge::release) flags = tellsWhich ? flags | releaseFlag : noButton;
    if (state.modes.mouseMode == MouseMode::x10) return flags;
    return flags | (modifiers.shift ? 4 : 0) | (modifiers.meta ? 8 : 0) | (modifiers.control ? 16 : 0);
}

void sendButton(TerminalState& state, int buttonFlags, const MousePlace& place) {
    const MouseMode mode = state.modes.mouseMode;
    const bool isRelease = (buttonFlags & releaseFlag) != 0 || (buttonFlags & 0x43) == noButton;
    if (mode == MouseMode::off || (mode == MouseMode::x10 && isRelease)) return;
    send(state, buttonFlags, place);
}

void sendMotion(TerminalState& state, int buttonFlags, const MousePlace& place) {
    const MouseMode mode = state.modes.mouseMode;
    const bool isDrag = (buttonFlags & 0x43) != noButton;
    if (mode == MouseMode::anyEvent || (mode == MouseMode::buttonEventTracking && isDrag)) {
        send(state, buttonFlags | motionFlag, place);
    }
}

void sendFocus(TerminalState& state, bool hasFocus) {
    if (state.modes.sendFocus) state.sendCsi(hasFocus ? "I" : "O");
}

}  // namespace orvane::InputReports
