#pragma once

#include <cstdint>

namespace orvane {

/// What a character is to those who look for words and addresses in a text.
enum class CharacterClass : std::uint8_t {
    blank,
    letter,       ///< or digit, underscore, mark, ideograph, emoji: what a name may consist of
    pathMark,     ///< punctuation that occurs within paths and URLs and seldom around them
    punctuation,  ///< all other, with brackets, quotes and what frames and arrows are drawn with
};

/// 0 is blank, like the empty cell it stands for.
CharacterClass characterClass(char32_t scalar);

/// Lines of boxes, block elements and the separators of status lines.
bool isFrameCharacter(char32_t scalar);

}  // namespace orvane
