#include "OrvaneShell/View/Input/EnhancedKeys.h"

#include <fmt/format.h>

#include <string_view>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane::EnhancedKeys {

namespace {

using Action = KeyEvent::Action;

/// A capital that an old terminal told is its key with Shift.
KeyEvent withKeyOfCapital(KeyEvent event) {
    const bool isPlainCapital = event.name == KeyName::character && lowerCase(event.character) != event.character;
    if (!isPlainCapital) return event;
    event.shiftedCharacter = event.character;
    event.character = lowerCase(event.character);
    event.modifiers.shift = !event.modifiers.capsLock || event.modifiers.shift;
    return event;
}

bool typesText(const KeyEvent& event) {
    return event.action != Action::release && !typedText(event).empty();
}

/// Enter, Tab and Backspace on their own keep their bytes, so that one can leave a program that has crashed and type
/// "reset".
bool isBasicKey(const KeyEvent& event) {
    const bool isOne = event.name == KeyName::enter || event.name == KeyName::tab || event.name == KeyName::backspace;
    return isOne && event.modifiers.isNone();
}

/// Modifier and lock keys.
bool isModifierKey(const KeyEvent& event) {
    constexpr char32_t firstLock = 57358;
    constexpr char32_t lastLock = 57360;
    constexpr char32_t leftShift = 57441;
    constexpr char32_t level5Shift = 57454;
    const char32_t number = event.character;
    return event.name == KeyName::functional &&
           ((number >= firstLock && number <= lastLock) || (number >= leftShift && number <= level5Shift));
}

bool isToldToProgram(const KeyEvent& event, int flags) {
    if ((flags & allKeys) == 0 && isModifierKey(event)) return false;
    if (event.action != Action::release) return true;
    return (flags & eventTypes) != 0 && ((flags & allKeys) != 0 || !isBasicKey(event));
}

bool keepsLegacyForm(const KeyEvent& event, int flags) {
    // What an input method typed is no key.
    const bool isTextAlone = event.name == KeyName::character && event.character == 0;
    if ((flags & allKeys) != 0) return isTextAlone && (flags & associatedText) == 0;
    if (event.action != Action::release && (typesText(event) || isBasicKey(event))) return true;
    const bool tellsEvent = (flags & eventTypes) != 0 && event.action != Action::press;
    return (flags & disambiguate) == 0 && !tellsEvent;
}

std::string modifiersOf(const KeyEvent& event, int flags) {
    const int parameter = KeyTable::parameterOf(event.modifiers);
    if ((flags & eventTypes) == 0 || event.action == Action::press) {
        return parameter == 1 ? std::string() : std::to_string(parameter);
    }
    return fmt::format("{}:{}", parameter, event.action == Action::repeat ? 2 : 3);
}

std::string keyOf(const KeyEvent& event, int flags) {
    std::string key = std::to_string(static_cast<std::uint32_t>(KeyTable::numberOf(event)));
    if ((flags & alternateKeys) == 0 || event.name != KeyName::character) return key;
    const char32_t shifted = event.modifiers.shift ? event.shiftedCharacter : 0;
    if (shifted != 0) key += fmt::format(":{}", static_cast<std::uint32_t>(shifted));
    if (event.baseCharacter != 0 && event.baseCharacter != event.character) {
        key += fmt::format("{}:{}", shifted == 0 ? ":" : "", static_cast<std::uint32_t>(event.baseCharacter));
    }
    return key;
}

std::string textOf(const KeyEvent& event, int flags) {
    constexpr int both = allKeys | associatedText;
    std::string numbers;
    if ((flags & both) != both || !typesText(event)) return numbers;
    Utf8Decoder().decode(typedText(event), [&](char32_t scalar) {
        numbers += fmt::format("{}{}", numbers.empty() ? "" : ":", static_cast<std::uint32_t>(scalar));
    });
    return numbers;
}

std::string numbered(const KeyEvent& event, int flags) {
    const std::string modifiers = modifiersOf(event, flags);
    const std::string text = textOf(event, flags);
    std::string sequence = "\x1b[" + keyOf(event, flags);
    if (!modifiers.empty() || !text.empty()) sequence += ";" + modifiers;
    if (!text.empty()) sequence += ";" + text;
    return sequence + "u";
}

}  // namespace

std::optional<std::string> encode(const KeyEvent& event, int flags) {
    if (!isToldToProgram(event, flags)) return std::string();
    if (keepsLegacyForm(event, flags)) return {};
    const std::string modifiers = modifiersOf(event, flags);
    // F3 is the one with a letter in its legacy form that has none here: a cursor report ends in it.
    const char letter = event.name == KeyName::f3 ? '\0' : KeyTable::letterOf(event.name);
    if (letter != '\0')
        return modifiers.empty() ? fmt::format("\x1b[{}", letter) : fmt::format("\x1b[1;{}{}", modifiers, letter);
    const bool hasNumber = event.name == KeyName::character || KeyTable::numberOf(event) != 0;
    if (!hasNumber)
        return fmt::format("\x1b[{}{}{}~", KeyTable::tildeOf(event.name), modifiers.empty() ? "" : ";", modifiers);
    return numbered(withKeyOfCapital(event), flags);
}

}  // namespace orvane::EnhancedKeys
