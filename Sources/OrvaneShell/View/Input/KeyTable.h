#pragma once

#include <cstdint>
#include <optional>

#include "OrvaneShell/View/Input/InputEvent.h"

/// How keys and modifiers stand in control sequences, for whoever reads or writes them.
namespace orvane::KeyTable {

/// Of "CSI number u": 13 is Enter, 57376 F13.
struct KeyCode {
    KeyName name = KeyName::character;
    char32_t character = 0;
};
KeyCode keyOfNumber(char32_t number);
/// 0 for those that stand with a letter or "~" instead, and for `other`.
char32_t numberOf(const KeyEvent& event);

/// Of "CSI letter" and "CSI 1 ; modifiers letter": A is Up, P is F1.
std::optional<KeyName> keyOfLetter(char letter);
/// '\0' when there is none. F3 is R, which only terminals without enhancements write (a cursor report ends in it too).
char letterOf(KeyName name);

/// Of "CSI number ~": 5 is Page Up, 24 F12, 34 F20.
std::optional<KeyName> keyOfTilde(int number);
/// 0 when there is none. Home and End have a letter.
int tildeOf(KeyName name);

/// Of "SS3 letter", what a keypad in application mode sends: p is 0, M is Enter.
std::optional<KeyName> keypadKeyOf(char letter);
char keypadLetterOf(KeyName name);

bool isKeypad(KeyName name);
/// Without the distinction of the keypad: its Enter is Enter, its 5 the character.
KeyEvent withoutKeypad(KeyEvent event);

/// The number in a sequence: 1, and 1 for Shift, 2 Alt, 4 Control, 8 Super, 16 Hyper, 32 Meta, 64 Caps Lock, 128 Num
/// Lock.
KeyModifiers modifiersOf(int parameter);
int parameterOf(const KeyModifiers& modifiers);

}  // namespace orvane::KeyTable
