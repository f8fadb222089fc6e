#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

/// A set of graphic characters that SCS designates.
enum class Charset : std::uint8_t {
    ascii,
    decSpecialGraphics,
    decSupplemental,
    decTechnical,
    // National replacement sets: ASCII with a few places taken by letters of a language.
    unitedKingdom,
    dutch,
    finnish,
    french,
    frenchCanadian,
    german,
    italian,
    norwegianDanish,
    portuguese,
    spanish,
    swedish,
    swiss,
    greek,
    hebrew,
    turkish,
    serboCroatian,
    russian,
    // DEC's own right halves.
    decGreek,
    decHebrew,
    decTurkish,
    decCyrillic,
    // Sets of 96: the right halves of ISO 8859.
    latin1Supplemental,
    latin2Supplemental,
    greekSupplemental,
    hebrewSupplemental,
    latinCyrillic,
    latin5Supplemental,
};

/// How many characters the set has: G1 to G3 can also hold sets of 96.
enum class CharsetSize : std::uint8_t { of94, of96 };

/// The set with this designator (the bytes of SCS behind the one that says where it goes: "0", "A", "%5"); nothing for
/// one that is not known.
std::optional<Charset> charsetDesignated(std::string_view designator, CharsetSize size);

struct CharsetDesignation {
    std::string_view designator;
    CharsetSize size = CharsetSize::of94;
};
/// How the set is designated: the other way round.
CharsetDesignation designationOf(Charset charset);

/// What a printable ASCII byte (0x20 to 0x7E) shows in the set; a place without a character shows U+2426.
char32_t characterIn(Charset charset, char byte);

}  // namespace orvane
