#include "OrvaneShell/View/Input/KeyTable.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace orvane::KeyTable {

namespace {

constexpr auto numbers = std::to_array<std::pair<char32_t, KeyName>>({
    {13, KeyName::enter},
    {9, KeyName::tab},
    {127, KeyName::backspace},
    {27, KeyName::escape},
});
constexpr char32_t firstFunctional = 57344;  // a block of Unicode's private use area
constexpr char32_t lastFunctional = 63743;
constexpr char32_t numberOfF13 = 57376;
constexpr char32_t numberOfKeypad0 = 57399;

constexpr auto letters = std::to_array<std::pair<char, KeyName>>({
    {'A', KeyName::up},
    {'B', KeyName::down},
    {'C', KeyName::right},
    {'D', KeyName::left},
    {'E', KeyName::keypadBegin},
    {'F', KeyName::end},
    {'H', KeyName::home},
    {'P', KeyName::f1},
    {'Q', KeyName::f2},
    {'R', KeyName::f3},
    {'S', KeyName::f4},
});

/// As xterm's VT220 keyboard counts; those with a letter too are written with that. F21 to F24 are xterm's own.
constexpr auto tildes = std::to_array<std::pair<int, KeyName>>({
    {1, KeyName::home}, {2, KeyName::insert}, {3, KeyName::delete_},
    {4, KeyName::end},  {5, KeyName::pageUp}, {6, KeyName::pageDown},
    {7, KeyName::home}, {8, KeyName::end},    {11, KeyName::f1},
    {12, KeyName::f2},  {13, KeyName::f3},    {14, KeyName::f4},
    {15, KeyName::f5},  {17, KeyName::f6},    {18, KeyName::f7},
    {19, KeyName::f8},  {20, KeyName::f9},    {21, KeyName::f10},
    {23, KeyName::f11}, {24, KeyName::f12},   {25, KeyName::f13},
    {26, KeyName::f14}, {28, KeyName::f15},   {29, KeyName::f16},
    {31, KeyName::f17}, {32, KeyName::f18},   {33, KeyName::f19},
    {34, KeyName::f20}, {42, KeyName::f21},   {43, KeyName::f22},
    {44, KeyName::f23}, {45, KeyName::f24},   {57427, KeyName::keypadBegin},
});

/// In the order of the names from keypad0; blank where the keypad sends what another key does.
constexpr std::string_view keypadLetters = "pqrstuvwxynojmkMXl";
constexpr std::string_view keypadCharacters = "0123456789./*-+\r=,";
constexpr auto keypadKeys =
    std::to_array<KeyName>({KeyName::left, KeyName::right, KeyName::up, KeyName::down, KeyName::pageUp,
                            KeyName::pageDown, KeyName::home, KeyName::end, KeyName::insert, KeyName::delete_});

KeyName after(KeyName first, std::size_t places) {
    return static_cast<KeyName>(std::to_underlying(first) + places);
}

std::size_t placeIn(KeyName first, KeyName name) {
    return static_cast<std::size_t>(std::to_underlying(name) - std::to_underlying(first));
}

template <typename Table, typename Key>
std::optional<KeyName> nameIn(const Table& table, Key key) {
    const auto found = std::ranges::find(table, key, &Table::value_type::first);
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

template <typename Table>
auto keyIn(const Table& table, KeyName name) {
    const auto found = std::ranges::find(table, name, &Table::value_type::second);
    return found == table.end() ? typename Table::value_type::first_type{} : found->first;
}

}  // namespace

KeyCode keyOfNumber(char32_t number) {
    // xterm tells Ctrl-Backspace by the code that it would send without modifiers.
    if (number == 8) return {.name = KeyName::backspace};
    if (const auto name = nameIn(numbers, number)) return {.name = *name};
    if (number >= numberOfF13 && number < numberOfKeypad0) {
        const std::size_t place = number - numberOfF13;
        if (place <= placeIn(KeyName::f13, KeyName::f35)) return {.name = after(KeyName::f13, place)};
    }
    if (number >= numberOfKeypad0 && number - numberOfKeypad0 <= placeIn(KeyName::keypad0, KeyName::keypadBegin)) {
        return {.name = after(KeyName::keypad0, number - numberOfKeypad0)};
    }
    if (number >= firstFunctional && number <= lastFunctional) return {KeyName::functional, number};
    return {KeyName::character, number};
}

char32_t numberOf(const KeyEvent& event) {
    if (event.name == KeyName::character || event.name == KeyName::functional) return event.character;
    if (event.name >= KeyName::f13 && event.name <= KeyName::f35) {
        return numberOfF13 + static_cast<char32_t>(placeIn(KeyName::f13, event.name));
    }
    if (isKeypad(event.name)) return numberOfKeypad0 + static_cast<char32_t>(placeIn(KeyName::keypad0, event.name));
    return keyIn(numbers, event.name);
}

std::optional<KeyName> keyOfLetter(char letter) {
    return nameIn(letters, letter);
}

char letterOf(KeyName name) {
    return keyIn(letters, name);
}

std::optional<KeyName> keyOfTilde(int number) {
    return nameIn(tildes, number);
}

int tildeOf(KeyName name) {
    return keyIn(tildes, name);
}

std::optional<KeyName> keypadKeyOf(char letter) {
    const std::size_t place = keypadLetters.find(letter);
    return place == std::string_view::npos ? std::nullopt : std::optional(after(KeyName::keypad0, place));
}

char keypadLetterOf(KeyName name) {
    if (!isKeypad(name)) return '\0';
    const std::size_t place = placeIn(KeyName::keypad0, name);
    return place < keypadLetters.size() ? keypadLetters[place] : '\0';
}

bool isKeypad(KeyName name) {
    return name >= KeyName::keypad0 && name <= KeyName::keypadBegin;
}

KeyEvent withoutKeypad(KeyEvent event) {
    if (!isKeypad(event.name) || event.name == KeyName::keypadBegin) return event;
    if (event.name >= KeyName::keypadLeft) {
        event.name = keypadKeys[placeIn(KeyName::keypadLeft, event.name)];
    } else if (event.name == KeyName::keypadEnter) {
        event.name = KeyName::enter;
    } else {
        event.character = static_cast<char32_t>(keypadCharacters[placeIn(KeyName::keypad0, event.name)]);
        event.name = KeyName::character;
    }
    return event;
}

KeyModifiers modifiersOf(int parameter) {
    const unsigned bits = parameter > 0 ? static_cast<unsigned>(parameter) - 1 : 0;
    return {.shift = (bits & 1) != 0,
            .alt = (bits & 2) != 0,
            .control = (bits & 4) != 0,
            .super = (bits & 8) != 0,
            .hyper = (bits & 16) != 0,
            .meta = (bits & 32) != 0,
            .capsLock = (bits & 64) != 0,
            .numLock = (bits & 128) != 0};
}

int parameterOf(const KeyModifiers& modifiers) {
    return 1 + (modifiers.shift ? 1 : 0) + (modifiers.alt ? 2 : 0) + (modifiers.control ? 4 : 0) +
           (modifiers.super ? 8 : 0) + (modifiers.hyper ? 16 : 0) + (modifiers.meta ? 32 : 0) +
           (modifiers.capsLock ? 64 : 0) + (modifiers.numLock ? 128 : 0);
}

}  // namespace orvane::KeyTable
