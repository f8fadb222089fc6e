#include <algorithm>
#include <utility>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "OrvaneShell/View/Input/SequenceMeaning.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane::SequenceMeaning {

namespace {

bool isScalar(int number) {
    return number > 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
}

/// Modifiers and kind of event, which stand together in one parameter.
void readModifiers(const ControlSequence& sequence, std::size_t parameter, KeyEvent& event) {
    event.modifiers = KeyTable::modifiersOf(std::min(sequence.valueOr(parameter, 1), 256));
    const int action = sequence.part(parameter, 1).value_or(1);
    if (action == 2) event.action = KeyEvent::Action::repeat;
    if (action == 3) event.action = KeyEvent::Action::release;
}

/// Capital and small letters with Shift are one key. xterm tells the capital, enhanced keyboards the key.
void foldCapital(KeyEvent& event) {
    const char32_t lower = lowerCase(event.character);
    if (!event.modifiers.shift || lower == event.character) return;
    event.shiftedCharacter = event.character;
    event.character = lower;
}

std::optional<KeyEvent> keyOfCode(int code) {
    if (!isScalar(code)) return {};
    const KeyTable::KeyCode key = KeyTable::keyOfNumber(static_cast<char32_t>(code));
    KeyEvent event{.name = key.name, .character = key.character};
    if (event.name == KeyName::character && isControlCharacter(event.character)) return {};
    return event;
}

char32_t alternateOf(const ControlSequence& sequence, std::size_t place) {
    const int code = sequence.part(0, place).value_or(0);
    return isScalar(code) && !isControlCharacter(static_cast<char32_t>(code)) ? static_cast<char32_t>(code) : 0;
}

std::string textOf(const ControlSequence& sequence) {
    std::string text;
    for (std::size_t place = 0; sequence.part(2, place); ++place) {
        const int scalar = *sequence.part(2, place);
        if (isScalar(scalar) && !isControlCharacter(static_cast<char32_t>(scalar)))
            appendUtf8(static_cast<char32_t>(scalar), text);
    }
    return text;
}

/// "CSI number : shifted : base ; modifiers : event ; text u". Number 0 is text alone, from an input method.
std::optional<KeyEvent> enhancedKey(const ControlSequence& sequence) {
    std::string text = textOf(sequence);
    const bool isTextAlone = sequence.part(0) == 0 && !text.empty();
    auto event = isTextAlone ? std::optional(KeyEvent()) : keyOfCode(sequence.valueOr(0, 0));
    if (!event) return {};
    event->text = std::move(text);
    readModifiers(sequence, 1, *event);
    event->shiftedCharacter = alternateOf(sequence, 1);
    event->baseCharacter = alternateOf(sequence, 2);
    foldCapital(*event);
    return event;
}

/// xterm's modifyOtherKeys: "CSI 27 ; modifiers ; code ~", with the character that Shift has made already.
std::optional<KeyEvent> otherKey(const ControlSequence& sequence) {
    auto event = keyOfCode(sequence.valueOr(2, 0));
    if (!event) return {};
    readModifiers(sequence, 1, *event);
    if (event->name == KeyName::character && event->modifiers.shift) event->shiftedCharacter = event->character;
    foldCapital(*event);
    return event;
}

/// rxvt ends its numbered keys with what else is held down.
std::optional<KeyModifiers> rxvtModifiers(const ControlSequence& sequence) {
    if (sequence.parameters.size() != 1) return {};
    if (sequence.final == '$') return KeyModifiers{.shift = true};
    if (sequence.final == '^') return KeyModifiers{.control = true};
    if (sequence.final == '@') return KeyModifiers{.shift = true, .control = true};
    return {};
}

std::optional<KeyEvent> numberedKey(const ControlSequence& sequence) {
    if (sequence.valueOr(0, 0) == 27 && sequence.parameters.size() == 3) return otherKey(sequence);
    const auto name = KeyTable::keyOfTilde(sequence.valueOr(0, 0));
    if (!name) return {};
    KeyEvent event{.name = *name};
    readModifiers(sequence, 1, event);
    if (const auto modifiers = rxvtModifiers(sequence)) event.modifiers = *modifiers;
    return event;
}

/// rxvt writes cursor keys with Shift (after CSI) or Control (after SS3) in small letters.
std::optional<KeyName> rxvtCursorKey(char letter) {
    return letter >= 'a' && letter <= 'd' ? KeyTable::keyOfLetter(static_cast<char>(letter - 'a' + 'A')) : std::nullopt;
}

std::optional<KeyEvent> letteredKey(const ControlSequence& sequence) {
    const bool isBare = sequence.parameters.empty();
    if (sequence.final == 'Z') {
        KeyEvent event{.name = KeyName::tab};
        readModifiers(sequence, 1, event);
        event.modifiers.shift = true;
        return event;
    }
    if (const auto name = rxvtCursorKey(sequence.final); name && isBare) {
        return KeyEvent{.name = *name, .modifiers = {.shift = true}};
    }
    const auto name = KeyTable::keyOfLetter(sequence.final);
    if (!name || sequence.parameters.size() > 2) return {};
    KeyEvent event{.name = *name};
    // With one parameter alone that is the modifiers, as old terminals have it.
    readModifiers(sequence, sequence.parameters.size() == 1 ? 0 : 1, event);
    return event;
}

}  // namespace

std::optional<KeyEvent> key(const ControlSequence& sequence) {
    const bool isRxvtShift = sequence.prefix == '\0' && sequence.final == '$' && sequence.intermediates.empty();
    if (!sequence.isPlain() && !isRxvtShift) return {};
    switch (sequence.final) {
        case 'u':
            return enhancedKey(sequence);
        case '~':
        case '^':
        case '$':
        case '@':
            return numberedKey(sequence);
        default:
            return letteredKey(sequence);
    }
}

std::optional<KeyEvent> ss3Key(std::string_view body) {
    const auto sequence = readControlSequence(body);
    if (!sequence || !sequence->isPlain()) return {};
    const bool isCursor = sequence->final <= 'H' || (sequence->final >= 'P' && sequence->final <= 'S');
    if (isCursor) return letteredKey(*sequence);
    if (const auto name = rxvtCursorKey(sequence->final); name && sequence->parameters.empty()) {
        return KeyEvent{.name = *name, .modifiers = {.control = true}};
    }
    const auto name = KeyTable::keypadKeyOf(sequence->final);
    if (!name || sequence->parameters.size() > 2) return {};
    KeyEvent event{.name = *name};
    readModifiers(*sequence, sequence->parameters.size() == 1 ? 0 : 1, event);
    return event;
}

std::optional<KeyEvent> consoleKey(char letter) {
    if (letter < 'A' || letter > 'E') return {};
    return KeyEvent{.name = static_cast<KeyName>(std::to_underlying(KeyName::f1) + (letter - 'A'))};
}

}  // namespace orvane::SequenceMeaning
