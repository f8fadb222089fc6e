#pragma once

#include "TerminalEmulator/Unicode/UnicodeTable.h"

/// What a terminal needs to know of a character. Every function takes a code point of at most U+10FFFF and costs a
/// comparison or two loads.
namespace orvane::UnicodeUtil {

inline constexpr char32_t zeroWidthJoiner = 0x200D;
inline constexpr char32_t textPresentation = 0xFE0E;   // variation selector 15
inline constexpr char32_t emojiPresentation = 0xFE0F;  // variation selector 16

/// C0, DEL and C1: none of them prints.
constexpr bool isControl(char32_t scalar) {
    return scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0);
}

/// The columns that the character takes on its own. 0: controls, nonspacing and enclosing marks, format characters that
/// nobody sees, and the vowels and trailing consonants of decomposed Hangul, which combine with the consonant before
/// them. 2: what Annex 11 calls wide or full-width, unassigned characters among ideographs with them, and what Annex 51
/// shows as emoji by default; regional indicators are among these. 1: all else, so also ambiguous characters, private
/// use, spacing marks and the soft hyphen.
inline int columnWidth(char32_t scalar) {
    // No mark and nothing wide lies below U+0300.
    if (scalar < 0x300) return isControl(scalar) ? 0 : 1;
    return UnicodeTable::propertiesOf(scalar) & UnicodeTable::widthBits;
}

/// Whether the character joins the one before it, whatever that is: it has no width (controls left out), has a
/// canonical combining class, or is an emoji modifier or a variation selector.
inline bool joinsPrevious(char32_t scalar) {
    return scalar >= 0x300 && (UnicodeTable::propertiesOf(scalar) & UnicodeTable::joinsPrevious) != 0;
}

/// One of the letters of which two make a flag.
constexpr bool isRegionalIndicator(char32_t scalar) {
    return scalar >= 0x1F1E6 && scalar <= 0x1F1FF;
}

/// One of the five skin tones.
constexpr bool isEmojiModifier(char32_t scalar) {
    return scalar >= 0x1F3FB && scalar <= 0x1F3FF;
}

/// Whether a skin tone changes the character.
inline bool isEmojiModifierBase(char32_t scalar) {
    return scalar >= 0x300 && (UnicodeTable::propertiesOf(scalar) & UnicodeTable::emojiModifierBase) != 0;
}

/// Whether a zero-width joiner makes one emoji of the character and another.
inline bool isExtendedPictographic(char32_t scalar) {
    return scalar >= 0xA9 && (UnicodeTable::propertiesOf(scalar) & UnicodeTable::extendedPictographic) != 0;
}

/// Whether variation selectors 15 and 16 choose between text and emoji for the character; behind any other they have no
/// effect. Digits, "#" and "*" are among these, for the sake of keycaps.
inline bool isVariationBase(char32_t scalar) {
    return (UnicodeTable::propertiesOf(scalar) & UnicodeTable::variationBase) != 0;
}

}  // namespace orvane::UnicodeUtil
