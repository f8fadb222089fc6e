#include "OrvaneCore/Support/TomlText.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "OrvaneCore/Support/Toml.h"

namespace orvane {

namespace {

constexpr std::array<std::pair<char, char>, 7> namedEscapes = {
    {{'b', '\b'}, {'t', '\t'}, {'n', '\n'}, {'f', '\f'}, {'r', '\r'}, {'"', '"'}, {'\\', '\\'}}};

bool isBareKeyByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '_' || byte == '-';
}

/// The character whose number follows in so many hex digits.
bool readCodePoint(TomlCursor& cursor, std::size_t digitCount, std::string& text) {
    const std::string_view digits = cursor.rest().substr(0, digitCount);
    std::uint32_t codePoint = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), codePoint, 16);
    const bool isWhole = digits.size() == digitCount && error == std::errc() && end == digits.data() + digitCount;
    if (!isWhole || codePoint > 0x10FFFF || U_IS_SURROGATE(codePoint)) return false;
    std::array<char, U8_MAX_LENGTH> bytes;
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, codePoint);
    text.append(bytes.data(), length);
    cursor.take(digits);
    return true;
}

/// A backslash at the end of a line takes the white space up to the next text away.
bool takeContinuation(TomlCursor& cursor) {
    TomlCursor ahead = cursor;
    ahead.skipBlanks();
    if (!ahead.takeNewline()) return false;
    ahead.skipWhiteSpace();
    cursor = ahead;
    return true;
}

/// What stands behind a backslash.
bool readEscape(TomlCursor& cursor, std::string& text) {
    if (cursor.take("u")) return readCodePoint(cursor, 4, text);
    if (cursor.take("U")) return readCodePoint(cursor, 8, text);
    if (cursor.isAtEnd()) return false;
    const auto* const named = std::ranges::find(namedEscapes, cursor.rest().front(), &std::pair<char, char>::first);
    if (named == namedEscapes.end()) return false;
    text += named->second;
    cursor.takeByte();
    return true;
}

/// The rest of a string behind its opening quote, up to and with the closing one.
std::optional<std::string> readUntil(std::string_view closing, TomlCursor& cursor) {
    const bool spansLines = closing.size() == 3;
    const bool hasEscapes = closing.front() == '"';
    std::string text;
    if (spansLines) cursor.takeNewline();
    while (!cursor.isAtEnd() && (spansLines || !cursor.isAtNewline())) {
        if (cursor.take(closing)) {
            // Up to two quotes may stand right before the closing three.
            for (int more = 0; spansLines && more < 2 && cursor.take(closing.substr(2)); ++more)
                text += closing.front();
            return text;
        }
        if (!hasEscapes || !cursor.take("\\")) {
            text += cursor.takeByte();
        } else if (!(spansLines && takeContinuation(cursor)) && !readEscape(cursor, text)) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::string> readSimpleKey(TomlCursor& cursor) {
    if (cursor.take("\"")) return readUntil("\"", cursor);
    if (cursor.take("'")) return readUntil("'", cursor);
    const std::string_view bare = cursor.takeWhile(isBareKeyByte);
    return bare.empty() ? std::nullopt : std::optional(std::string(bare));
}

}  // namespace

std::optional<std::string> readTomlString(TomlCursor& cursor) {
    for (const std::string_view quote : {R"(""")", "'''", "\"", "'"}) {
        if (cursor.take(quote)) return readUntil(quote, cursor);
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> readTomlKey(TomlCursor& cursor) {
    std::vector<std::string> parts;
    do {
        cursor.skipBlanks();
        std::optional<std::string> part = readSimpleKey(cursor);
        if (!part || parts.size() == Toml::maximumDepth) return std::nullopt;
        parts.push_back(*std::move(part));
        cursor.skipBlanks();
    } while (cursor.take("."));
    return parts;
}

}  // namespace orvane
