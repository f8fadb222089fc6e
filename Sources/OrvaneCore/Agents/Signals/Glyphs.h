#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace orvane {

/// Reading a row from its ends, a code point at a time. Texts are well-formed UTF-8.
namespace Glyphs {

/// The first code point; empty for an empty text.
std::string_view first(std::string_view text);
std::string_view last(std::string_view text);

/// Drops that many blanks from the beginning, or all; gives how many there were.
std::size_t dropBlanks(std::string_view& text, std::size_t most = std::string_view::npos);
void dropBlanksAtEnd(std::string_view& text);

bool isOneOf(std::string_view glyph, std::initializer_list<std::string_view> glyphs);
bool isBraille(std::string_view glyph);  ///< the frames of most spinners
bool turns(std::string_view glyph);      ///< before a title, while its program works
bool isAsciiAlphanumeric(char byte);

}  // namespace Glyphs

}  // namespace orvane
