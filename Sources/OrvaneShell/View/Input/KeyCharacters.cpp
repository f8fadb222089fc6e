#include "OrvaneShell/View/Input/KeyCharacters.h"

#include "OrvaneShell/View/Input/KeyTable.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

/// Upper-case letters of a block, and how far behind them their lower-case ones stand.
struct CaseRange {
    char32_t first = 0;
    char32_t last = 0;
    char32_t distance = 0;
};
constexpr CaseRange caseRanges[] = {{U'A', U'Z', 0x20},   {0xC0, 0xD6, 0x20},   {0xD8, 0xDE, 0x20},
                                    {0x391, 0x3A1, 0x20}, {0x3A3, 0x3AB, 0x20}, {0x410, 0x42F, 0x20},
                                    {0x400, 0x40F, 0x50}};

}  // namespace

char32_t lowerCase(char32_t character) {
    for (const CaseRange& range : caseRanges) {
        if (character >= range.first && character <= range.last) return character + range.distance;
    }
    return character;
}

char32_t upperCase(char32_t character) {
    for (const CaseRange& range : caseRanges) {
        const bool isIn = character >= range.first + range.distance && character <= range.last + range.distance;
        // A final sigma has no capital of its own place.
        if (isIn && character != 0x3C2) return character - range.distance;
    }
    return character;
}

bool isControlCharacter(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

char32_t typedCharacter(const KeyEvent& event) {
    if (event.name != KeyName::character) return 0;
    if (event.modifiers.shift && event.shiftedCharacter != 0) return event.shiftedCharacter;
    const bool isUpper = event.modifiers.shift != event.modifiers.capsLock;
    return isUpper ? upperCase(event.character) : event.character;
}

std::string typedText(const KeyEvent& event) {
    KeyModifiers others = event.modifiers.withoutLocks();
    others.shift = false;
    if (!others.isNone() || event.action == KeyEvent::Action::release) return {};
    if (!event.text.empty()) return event.text;
    const char32_t typed = typedCharacter(KeyTable::withoutKeypad(event));
    std::string text;
    if (!isControlCharacter(typed)) appendUtf8(typed, text);
    return text;
}

}  // namespace orvane
