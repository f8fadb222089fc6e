#include "OrvaneShell/View/Input/KeyText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Input/KeyTable.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

struct ModifierName {
    std::string_view name;
    bool KeyModifiers::* modifier = nullptr;
};
/// Those that are written come first.
constexpr ModifierName modifierNames[] = {
    {"C", &KeyModifiers::control},   {"M", &KeyModifiers::alt},        {"S", &KeyModifiers::shift},
    {"D", &KeyModifiers::super},     {"Ctrl", &KeyModifiers::control}, {"Control", &KeyModifiers::control},
    {"Alt", &KeyModifiers::alt},     {"Meta", &KeyModifiers::alt},     {"A", &KeyModifiers::alt},
    {"Shift", &KeyModifiers::shift}, {"Super", &KeyModifiers::super},
};
constexpr std::size_t writtenModifiers = 4;

struct NamedKey {
    std::string_view name;
    KeyName key = KeyName::character;
    char32_t character = 0;
};
/// The first name of a key is the one that is written.
constexpr NamedKey namedKeys[] = {
    {"Enter", KeyName::enter},      {"Return", KeyName::enter},
    {"Tab", KeyName::tab},          {"Backspace", KeyName::backspace},
    {"BSpace", KeyName::backspace}, {"Escape", KeyName::escape},
    {"Esc", KeyName::escape},       {"Up", KeyName::up},
    {"Down", KeyName::down},        {"Left", KeyName::left},
    {"Right", KeyName::right},      {"Home", KeyName::home},
    {"End", KeyName::end},          {"PageUp", KeyName::pageUp},
    {"PgUp", KeyName::pageUp},      {"PageDown", KeyName::pageDown},
    {"PgDn", KeyName::pageDown},    {"Insert", KeyName::insert},
    {"Ins", KeyName::insert},       {"Delete", KeyName::delete_},
    {"Del", KeyName::delete_},      {"Space", KeyName::character, U' '},
};

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowered, lowered);
}

/// Takes "C-" and the like from the text; a key that is '-' itself has nothing behind it.
const ModifierName* takeModifier(std::string_view& text) {
    const std::size_t end = text.find_first_of("-+");
    if (end == std::string_view::npos || end == 0 || end + 1 == text.size()) return nullptr;
    const auto* const found = std::ranges::find_if(
        modifierNames, [&](const ModifierName& modifier) { return isSameName(modifier.name, text.substr(0, end)); });
    if (found == std::ranges::end(modifierNames)) return nullptr;
    text.remove_prefix(end + 1);
    return found;
}

std::optional<KeyName> functionKey(std::string_view text) {
    constexpr int count = std::to_underlying(KeyName::f35) - std::to_underlying(KeyName::f1) + 1;
    if (text.size() < 2 || lowered(text.front()) != 'f' || text[1] == '0') return {};
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 1 || number > count) return {};
    return static_cast<KeyName>(std::to_underlying(KeyName::f1) + number - 1);
}

/// The one character that the text is, if it is one that a key types.
std::optional<char32_t> onlyCharacter(std::string_view text) {
    std::u32string characters;
    Utf8Decoder decoder;
    const auto take = [&](char32_t character) { characters += character; };
    decoder.decode(text, take);
    decoder.finish(take);
    const bool isOne = characters.size() == 1 && !isControlCharacter(characters.front()) &&
                       characters.front() != Utf8Decoder::replacementCharacter;
    return isOne ? std::optional(characters.front()) : std::nullopt;
}

std::optional<KeyPattern> keyOf(std::string_view text) {
    if (const auto character = onlyCharacter(text)) return KeyPattern{.character = *character};
    if (const auto name = functionKey(text)) return KeyPattern{.name = *name};
    const auto* const found =
        std::ranges::find_if(namedKeys, [&](const NamedKey& key) { return isSameName(key.name, text); });
    if (found == std::ranges::end(namedKeys)) return {};
    return KeyPattern{.name = found->key, .character = found->character};
}

/// A capital is its letter with Shift, but with Control only another way to write the letter.
void foldCapital(KeyPattern& pattern) {
    const char32_t lower = lowerCase(pattern.character);
    if (lower == pattern.character) return;
    pattern.character = lower;
    pattern.modifiers.shift = pattern.modifiers.shift || !pattern.modifiers.control;
}

std::string nameOf(const KeyPattern& pattern) {
    const auto* const found = std::ranges::find_if(
        namedKeys, [&](const NamedKey& key) { return key.key == pattern.name && key.character == pattern.character; });
    if (found != std::ranges::end(namedKeys)) return std::string(found->name);
    if (pattern.name >= KeyName::f1 && pattern.name <= KeyName::f35) {
        return "F" + std::to_string(std::to_underlying(pattern.name) - std::to_underlying(KeyName::f1) + 1);
    }
    std::string text;
    if (pattern.name == KeyName::character) appendUtf8(pattern.character, text);
    return text;
}

/// Of another script, the character on a US keyboard.
bool isPlaceOf(char32_t character, const KeyEvent& event) {
    const bool isShortcut = event.modifiers.control || event.modifiers.alt;
    return isShortcut && event.character >= 0x80 && event.baseCharacter == character;
}

bool isCharacterOf(const KeyPattern& pattern, const KeyEvent& event) {
    const KeyEvent wanted{.character = pattern.character, .modifiers = pattern.modifiers};
    const bool isSameShift = pattern.modifiers.shift == event.modifiers.shift;
    if (isSameShift && (event.character == pattern.character || isPlaceOf(pattern.character, event))) return true;
    KeyEvent typed = event;
    typed.modifiers.capsLock = false;
    // Without being told what Shift makes of a key that is no letter, it is not known.
    const bool isKnown =
        !event.modifiers.shift || event.shiftedCharacter != 0 || upperCase(event.character) != event.character;
    return isKnown && typedCharacter(typed) == typedCharacter(wanted);
}

/// Without enhanced keys both send the same byte; whoever binds C-h means that one.
bool isControlH(const KeyPattern& pattern, const KeyEvent& event) {
    const KeyPattern controlH{.character = 'h', .modifiers = {.control = true}};
    return pattern == controlH && event.name == KeyName::backspace && event.bytes == "\b";
}

}  // namespace

bool KeyPattern::matches(const KeyEvent& given) const {
    if (isControlH(*this, given)) return true;
    const KeyEvent event = KeyTable::withoutKeypad(given);
    if (event.action == KeyEvent::Action::release || event.name != name) return false;
    KeyModifiers held = event.modifiers.withoutLocks();
    held.alt = held.alt || std::exchange(held.meta, false);
    if (name == KeyName::character) held.shift = modifiers.shift;
    if (held != modifiers.withoutLocks()) return false;
    return name == KeyName::character ? isCharacterOf(*this, event) : event.character == character;
}

namespace KeyText {

std::expected<KeyPattern, std::string> parse(std::string_view text) {
    KeyModifiers modifiers;
    std::string_view rest = text;
    while (const ModifierName* const modifier = takeModifier(rest))
        modifiers.*modifier->modifier = true;
    auto pattern = keyOf(rest);
    if (!pattern) return std::unexpected(std::string(rest.empty() ? text : rest));
    pattern->modifiers = modifiers;
    foldCapital(*pattern);
    return *pattern;
}

std::string write(const KeyPattern& pattern) {
    KeyPattern written = pattern;
    const bool isCapital = pattern.name == KeyName::character && pattern.modifiers.shift &&
                           !pattern.modifiers.control && upperCase(pattern.character) != pattern.character;
    if (isCapital) {
        written.character = upperCase(pattern.character);
        written.modifiers.shift = false;
    }
    std::string text;
    for (std::size_t place = 0; place < writtenModifiers; ++place) {
        const ModifierName& modifier = modifierNames[place];
        if (written.modifiers.*modifier.modifier) text += std::string(modifier.name) + "-";
    }
    return text + nameOf(written);
}

}  // namespace KeyText

}  // namespace orvane
