#include <algorithm>

#include "OrvaneShell/View/Input/SequenceMeaning.h"

namespace orvane::SequenceMeaning {

namespace {

constexpr int motionFlag = 32;
constexpr int wheelFlag = 64;
constexpr int furtherButtonFlag = 128;
constexpr int greatestCell = 0xFFFF;

/// The number of buttons and modifiers, as all forms share it. Nothing for buttons beyond the wheel.
std::optional<MouseEvent> eventOf(int code, int col, int row) {
    if (code < 0 || code >= furtherButtonFlag || col < 1 || row < 1) return {};
    using Button = MouseEvent::Button;
    constexpr Button buttons[] = {Button::left, Button::middle, Button::right, Button::none};
    constexpr Button wheel[] = {Button::wheelUp, Button::wheelDown, Button::wheelLeft, Button::wheelRight};
    return MouseEvent{
        .button = (code & wheelFlag) != 0 ? wheel[code & 3] : buttons[code & 3],
        .action = (code & motionFlag) != 0 ? MouseEvent::Action::motion : MouseEvent::Action::press,
        .modifiers = {.shift = (code & 4) != 0, .alt = (code & 8) != 0, .control = (code & 16) != 0},
        .x = std::min(col, greatestCell) - 1,
        .y = std::min(row, greatestCell) - 1,
    };
}

/// Forms that have no letter of their own for it tell by button 3 that one went up.
std::optional<MouseEvent> oldEventOf(int code, int col, int row) {
    auto event = eventOf(code, col, row);
    const bool isPress = event && event->action == MouseEvent::Action::press;
    if (isPress && event->button == MouseEvent::Button::none) event->action = MouseEvent::Action::release;
    return event;
}

}  // namespace

std::optional<MouseEvent> mouse(const ControlSequence& sequence) {
    const bool isEnd = sequence.final == 'M' || sequence.final == 'm';
    if (!isEnd || !sequence.intermediates.empty() || sequence.parameters.size() != 3) return {};
    const auto values = sequence.values();
    if (sequence.prefix == '\0' && sequence.final == 'M') return oldEventOf(values[0] - 32, values[1], values[2]);
    if (sequence.prefix != '<') return {};
    auto event = eventOf(values[0], values[1], values[2]);
    if (event && sequence.final == 'm') event->action = MouseEvent::Action::release;
    return event;
}

std::optional<MouseEvent> x10Mouse(std::string_view body) {
    const auto number = [&](std::size_t place) { return static_cast<unsigned char>(body[place]) - 32; };
    return body.size() == 3 ? oldEventOf(number(0), number(1), number(2)) : std::nullopt;
}

}  // namespace orvane::SequenceMeaning
