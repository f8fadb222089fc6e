#include "OrvaneShell/View/Input/MouseForwarding.h"

#include <utility>

#include "OrvaneShell/View/Input/KeyEncoder.h"

namespace orvane::MouseForwarding {

namespace {

using Action = MouseEvent::Action;
using Button = MouseEvent::Button;

/// Of a cell where nobody shows one, as answers about sizes have it.
constexpr int cellWidth = 8;
constexpr int cellHeight = 16;

bool isWheel(Button button) {
    return button >= Button::wheelUp && button <= Button::wheelRight;
}

int numberOf(Button button) {
    constexpr int noButton = 3;
    constexpr int firstWheel = 4;
    if (button == Button::none) return noButton;
    if (isWheel(button)) return firstWheel + (std::to_underlying(button) - std::to_underlying(Button::wheelUp));
    return std::to_underlying(button);
}

bool isOnScreen(const MouseEvent& event, const Terminal& terminal) {
    return event.x >= 0 && event.x < terminal.cols() && event.y >= 0 && event.y < terminal.rows();
}

}  // namespace

bool isWanted(const MouseEvent& event, const TerminalModes& modes) {
    const bool isMotion = event.action == Action::motion;
    switch (modes.mouseMode) {
        case MouseMode::off:
            return false;
        case MouseMode::x10:
            return event.action == Action::press && event.button <= Button::right;
        case MouseMode::vt200:
            return !isMotion;
        case MouseMode::buttonEventTracking:
            return !isMotion || event.button != Button::none;
        case MouseMode::anyEvent:
            return true;
    }
    return false;
}

void forward(const MouseEvent& event, Terminal& terminal) {
    if (!isWanted(event, terminal.modes()) || !isOnScreen(event, terminal)) return;
    const KeyModifiers& held = event.modifiers;
    const int flags = terminal.encodeButton(numberOf(event.button), event.action == Action::release, held.shift,
                                            held.alt || held.meta, held.control);
    const int pixelX = event.x * cellWidth + cellWidth / 2;
    const int pixelY = event.y * cellHeight + cellHeight / 2;
    if (event.action == Action::motion) {
        terminal.sendMotion(flags, event.x, event.y, pixelX, pixelY);
    } else {
        terminal.sendEvent(flags, event.x, event.y, pixelX, pixelY);
    }
}

std::string wheelKeys(const MouseEvent& event, const Terminal& terminal) {
    constexpr int keysPerTurn = 3;
    const bool isUp = event.button == Button::wheelUp;
    if (!isUp && event.button != Button::wheelDown) return {};
    if (event.action != Action::press || !terminal.isAlternateBufferActive()) return {};
    if (terminal.modes().mouseMode != MouseMode::off) return {};
    const KeyEvent key{.name = isUp ? KeyName::up : KeyName::down};
    std::string keys;
    for (int count = 0; count < keysPerTurn; ++count)
        keys += encodeKey(key, terminal.modes(), terminal.keyboardMode(), terminal.keyModifiers());
    return keys;
}

}  // namespace orvane::MouseForwarding
