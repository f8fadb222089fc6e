#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

/// Which characters a terminal can show.
enum class GlyphSet : std::uint8_t {
    all,
    console,  ///< what the fonts of text consoles have: letters and single box lines, but few other signs
    ascii,
};

/// The character, or the one of the set that comes nearest; '?' when none does. It takes one column: what a wide
/// character leaves free is for the caller to blank.
char32_t glyphIn(GlyphSet glyphs, char32_t character);

/// A text in characters of the set.
std::string textIn(GlyphSet glyphs, std::string_view text);

}  // namespace orvane
