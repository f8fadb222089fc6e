#include "OrvaneCore/Agents/Signals/Glyphs.h"

#include <algorithm>

namespace orvane::Glyphs {

namespace {

bool continuesCodePoint(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

std::string_view first(std::string_view text) {
    std::size_t end = std::min<std::size_t>(1, text.size());
    while (end < text.size() && continuesCodePoint(text[end]))
        ++end;
    return text.substr(0, end);
}

std::string_view last(std::string_view text) {
    std::size_t begin = text.size() - std::min<std::size_t>(1, text.size());
    while (begin > 0 && continuesCodePoint(text[begin]))
        --begin;
    return text.substr(begin);
}

std::size_t dropBlanks(std::string_view& text, std::size_t most) {
    const std::size_t count = std::min({text.find_first_not_of(' '), text.size(), most});
    text.remove_prefix(count);
    return count;
}

void dropBlanksAtEnd(std::string_view& text) {
    text = text.substr(0, text.find_last_not_of(' ') + 1);
}

bool isOneOf(std::string_view glyph, std::initializer_list<std::string_view> glyphs) {
    return std::ranges::find(glyphs, glyph) != glyphs.end();
}

bool isBraille(std::string_view glyph) {
    return glyph >= "\u2800" && glyph <= "\u28FF";
}

bool turns(std::string_view glyph) {
    return isBraille(glyph) || isOneOf(glyph, {"◐", "◓", "◑", "◒", "◴", "◷", "◶", "◵"});
}

bool isAsciiAlphanumeric(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

}  // namespace orvane::Glyphs
