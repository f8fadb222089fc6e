#include "OrvaneShell/View/Input/LegacyKeys.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane::LegacyKeys {

namespace {

constexpr std::string_view escape = "\x1b";

bool hasAlt(const KeyEvent& event) {
    return event.modifiers.alt || event.modifiers.meta;
}

/// What Control makes of a character, as on a VT220 and in xterm, digits included.
std::optional<char> controlByte(char32_t character) {
    if (character >= U'a' && character <= U'z') return static_cast<char>(character - U'a' + 1);
    if (character >= U'@' && character <= U'_') return static_cast<char>(character - U'@');
    constexpr std::u32string_view others = U" 2345678/~?";
    constexpr std::string_view bytes("\x00\x00\x1b\x1c\x1d\x1e\x1f\x7f\x1f\x1e\x7f", others.size());
    const std::size_t place = others.find(character);
    return place == std::u32string_view::npos ? std::nullopt : std::optional(bytes[place]);
}

/// On a keyboard of another script the key's place counts for Control: where C is on a US keyboard, Ctrl-C is.
char32_t characterForControl(const KeyEvent& event) {
    const char32_t typed = typedCharacter(event);
    return typed >= 0x80 && event.baseCharacter != 0 ? event.baseCharacter : typed;
}

std::string characterBytes(const KeyEvent& event) {
    // These have never had bytes; the bare character would be another key.
    if (event.modifiers.super || event.modifiers.hyper) return {};
    std::string bytes(hasAlt(event) ? escape : "");
    if (event.modifiers.control) {
        if (const auto control = controlByte(characterForControl(event))) return bytes + *control;
    }
    if (auto text = typedText(event); !text.empty()) return text;
    if (const char32_t typed = typedCharacter(event); typed != 0) appendUtf8(typed, bytes);
    return bytes;
}

/// xterm's number has no more than these; Hyper, the locks and a Meta that is not Alt are left out.
int modifierParameter(const KeyEvent& event) {
    const KeyModifiers& held = event.modifiers;
    return KeyTable::parameterOf(
        {.shift = held.shift, .alt = hasAlt(event), .control = held.control, .super = held.super});
}

std::string letteredKey(const KeyEvent& event, char letter, bool isApplication) {
    const int modifiers = modifierParameter(event);
    if (modifiers > 1) return fmt::format("\x1b[1;{}{}", modifiers, letter);
    return fmt::format("\x1b{}{}", isApplication ? 'O' : '[', letter);
}

std::string numberedKey(const KeyEvent& event, int number) {
    const int modifiers = modifierParameter(event);
    return modifiers > 1 ? fmt::format("\x1b[{};{}~", number, modifiers) : fmt::format("\x1b[{}~", number);
}

/// Whether the keypad sends what an application asked it for: digits typed under Num Lock stay digits. Enhanced
/// terminals tell those alone as digits of the keypad.
bool isApplicationKeypad(const KeyEvent& event, const TerminalModes& modes) {
    const bool isNumber = event.modifiers.numLock || event.bytes.starts_with("\x1b[");
    return modes.applicationKeypad && !isNumber && KeyTable::keypadLetterOf(event.name) != '\0';
}

std::string keypadKey(const KeyEvent& event) {
    const char letter = KeyTable::keypadLetterOf(event.name);
    const int modifiers = modifierParameter(event);
    return modifiers > 1 ? fmt::format("\x1bO{}{}", modifiers, letter) : fmt::format("\x1bO{}", letter);
}

std::string functionKey(const KeyEvent& event, const TerminalModes& modes) {
    constexpr char32_t menu = 57363;
    if (const char letter = KeyTable::letterOf(event.name); letter != '\0') {
        const bool isFunction = event.name >= KeyName::f1 && event.name <= KeyName::f4;
        return letteredKey(event, letter, isFunction || modes.applicationCursor);
    }
    if (const int number = KeyTable::tildeOf(event.name); number != 0) return numberedKey(event, number);
    if (event.name == KeyName::functional && event.character == menu) return numberedKey(event, 29);
    return {};
}

std::string enterBytes(const KeyEvent& event, const TerminalModes& modes) {
    std::string bytes(hasAlt(event) || event.modifiers.shift ? escape : "");
    return bytes + (modes.lineFeedMode ? "\r\n" : "\r");
}

std::string tabBytes(const KeyEvent& event) {
    const std::string bytes(hasAlt(event) ? escape : "");
    return bytes + (event.modifiers.shift ? "\x1b[Z" : "\t");
}

/// Came as old terminals send keys that are no sequences: they have no two forms.
bool passesAsItCame(const KeyEvent& event) {
    const bool isTyped = event.name == KeyName::character || event.name == KeyName::tab ||
                         event.name == KeyName::backspace || event.name == KeyName::escape;
    const bool isSequence =
        event.bytes.size() > 2 &&
        (event.bytes.starts_with("\x1b[") || event.bytes.starts_with("\x1bO") || event.bytes.starts_with("\x1b\x1b"));
    return isTyped && !event.bytes.empty() && !isSequence;
}

}  // namespace

std::string encode(const KeyEvent& given, const TerminalModes& modes) {
    if (given.action == KeyEvent::Action::release) return {};
    if (passesAsItCame(given)) return given.bytes;
    if (isApplicationKeypad(given, modes)) return keypadKey(given);
    const KeyEvent event = KeyTable::withoutKeypad(given);
    const std::string alt(hasAlt(event) ? escape : "");
    switch (event.name) {
        case KeyName::character:
            return characterBytes(event);
        case KeyName::enter:
            return enterBytes(event, modes);
        case KeyName::tab:
            return tabBytes(event);
        case KeyName::backspace:
            return alt + (event.modifiers.control ? "\b" : "\x7f");
        case KeyName::escape:
            return alt + "\x1b";
        default:
            return functionKey(event, modes);
    }
}

bool isOtherKey(const KeyEvent& event, int level) {
    const bool onlyShift = modifierParameter(event) == 2;
    if (event.action == KeyEvent::Action::release || modifierParameter(event) == 1 || level < 1) return false;
    switch (event.name) {
        case KeyName::character:
            if (onlyShift) return false;
            return level > 1 || (event.modifiers.control && !controlByte(characterForControl(event)));
        case KeyName::tab:
            return !onlyShift;
        case KeyName::enter:
        case KeyName::escape:
            return true;
        case KeyName::backspace:
            return level > 1;
        default:
            return false;
    }
}

std::string encodeOther(const KeyEvent& event) {
    const char32_t code = event.name == KeyName::character ? typedCharacter(event) : KeyTable::numberOf(event);
    return fmt::format("\x1b[27;{};{}~", modifierParameter(event), static_cast<std::uint32_t>(code));
}

}  // namespace orvane::LegacyKeys
