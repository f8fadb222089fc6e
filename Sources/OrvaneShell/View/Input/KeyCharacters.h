#pragma once

#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"

/// What keys type, however their terminal told them.
namespace orvane {

/// Of alphabets with simple pairs (ASCII, Latin-1, Greek, Cyrillic); any other character is given back as it is.
char32_t lowerCase(char32_t character);
char32_t upperCase(char32_t character);

/// A C0 or C1 control character or DEL: nothing that anybody types as text.
bool isControlCharacter(char32_t character);

/// The character with Shift and Caps Lock applied, without Control and Alt; 0 for a key that is none.
char32_t typedCharacter(const KeyEvent& event);

/// What a field of text takes in for the key: empty with Control, Alt and the like, for a release and for keys that
/// type nothing. The keypad types too.
std::string typedText(const KeyEvent& event);

}  // namespace orvane
