#include "OrvaneCore/Support/Text.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "OrvaneCore/Support/FoldTable.h"

namespace orvane::Text {

namespace {

constexpr std::string_view replacementCharacter = "\uFFFD";

bool isAscii(char byte) {
    return static_cast<signed char>(byte) >= 0;
}

/// Where the ASCII that starts at `from` ends; eight bytes at a time.
std::size_t asciiEnd(std::string_view text, std::size_t from) {
    for (std::uint64_t word = 0; text.size() - from >= sizeof word; from += sizeof word) {
        std::memcpy(&word, text.data() + from, sizeof word);
        if ((word & 0x8080808080808080U) != 0) break;
    }
    while (from < text.size() && isAscii(text[from]))
        ++from;
    return from;
}

/// A code point and where it ends; -1 for a malformed run.
struct Decoded {
    UChar32 codePoint;
    std::size_t end;
};

Decoded decode(std::string_view text, std::size_t from) {
    UChar32 codePoint = 0;
    U8_NEXT(text.data(), from, text.size(), codePoint);  // NOLINT(bugprone-inc-dec-in-conditions): the macro
    return {codePoint, from};
}

/// The code point at the end of a text that is not empty and where it starts; -1 for a malformed run.
struct DecodedBack {
    UChar32 codePoint;
    std::size_t start;
};

DecodedBack decodeLast(std::string_view text) {
    // A window, because the macro counts with 32 bits.
    const std::string_view window = text.substr(text.size() - std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    auto start = static_cast<std::int32_t>(window.size());
    UChar32 codePoint = 0;
    U8_PREV(window.data(), 0, start, codePoint);
    return {codePoint, text.size() - window.size() + static_cast<std::size_t>(start)};
}

/// Finds the borders of characters. Between two ASCII characters there always is one, except inside CR LF, so that
/// ICU is asked only around what is not ASCII. Positions given in must be borders themselves.
class CharacterBorders {
 public:
    explicit CharacterBorders(std::string_view text) : text_(text) {}

    std::size_t after(std::size_t position) {
        const std::size_t next = position + 1;
        if (!isAscii(text_[position])) return fromIcu(&icu::BreakIterator::following, position, text_.size());
        if (next == text_.size()) return next;
        if (!isAscii(text_[next])) return fromIcu(&icu::BreakIterator::following, position, text_.size());
        return isLineEnd(position) ? next + 1 : next;
    }

    std::size_t before(std::size_t position) {
        const std::size_t last = position - 1;
        if (!isAscii(text_[last])) return fromIcu(&icu::BreakIterator::preceding, position, 0);
        if (last == 0) return last;
        if (!isAscii(text_[last - 1])) return fromIcu(&icu::BreakIterator::preceding, position, 0);
        return isLineEnd(last - 1) ? last - 1 : last;
    }

 private:
    /// ICU numbers text with 32 bits. Nothing that people read comes near that; what lies beyond is one character.
    static constexpr std::size_t icuLimit = std::numeric_limits<std::int32_t>::max();

    bool isLineEnd(std::size_t position) const { return text_[position] == '\r' && text_[position + 1] == '\n'; }

    std::size_t fromIcu(std::int32_t (icu::BreakIterator::*step)(std::int32_t), std::size_t position,
                        std::size_t outermost) {
        if (position > icuLimit || !attach()) return outermost;
        const std::int32_t border = (iterator()->*step)(static_cast<std::int32_t>(position));
        return border == icu::BreakIterator::DONE ? outermost : static_cast<std::size_t>(border);
    }

    /// One iterator a thread: making one takes far longer than counting a title.
    static icu::BreakIterator* iterator() {
        thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
            UErrorCode status = U_ZERO_ERROR;
            return std::unique_ptr<icu::BreakIterator>(
                icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        }();
        return iterator.get();
    }

    bool attach() {
        if (attached_) return true;
        if (iterator() == nullptr) return false;
        UErrorCode status = U_ZERO_ERROR;
        UText source = UTEXT_INITIALIZER;
        const auto length = static_cast<std::int64_t>(std::min(text_.size(), icuLimit));
        utext_openUTF8(&source, text_.data(), length, &status);  // NOLINT(bugprone-suspicious-stringview-data-usage)
        iterator()->setText(&source, status);                    // keeps a shallow copy
        utext_close(&source);
        attached_ = U_SUCCESS(status);
        return attached_;
    }

    std::string_view text_;
    bool attached_ = false;
};

/// Where the first `count` characters end.
std::size_t endOfPrefix(std::string_view text, std::size_t count) {
    if (text.size() <= count) return text.size();  // a character has a byte at least
    CharacterBorders borders(text);
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count)
        end = borders.after(end);
    return end;
}

std::size_t characterWidth(std::string_view character) {
    const UChar32 base = decode(character, 0).codePoint;
    if (base < 0) return 1;  // shown as U+FFFD
    const auto category = u_charType(base);
    if (category == U_CONTROL_CHAR || category == U_NON_SPACING_MARK || category == U_FORMAT_CHAR) return 0;
    constexpr std::string_view emojiSelector = "\uFE0F";
    const auto width = u_getIntPropertyValue(base, UCHAR_EAST_ASIAN_WIDTH);
    if (width == U_EA_WIDE || width == U_EA_FULLWIDTH) return 2;
    // A flag is a pair of regional indicators, each of which is narrow on its own.
    constexpr std::size_t indicatorLength = 4;
    if (u_hasBinaryProperty(base, UCHAR_REGIONAL_INDICATOR)) return character.size() >= 2 * indicatorLength ? 2 : 1;
    // Behind anything but an emoji the selector has no effect (Unicode Technical Standard 51).
    const bool asksForEmoji = character.find(emojiSelector) != std::string_view::npos;
    return asksForEmoji && u_hasBinaryProperty(base, UCHAR_EMOJI) ? 2 : 1;
}

char asciiLowerCase(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

void appendLowerCase(std::string& result, std::string_view ascii) {
    const std::size_t start = result.size();
    result.append(ascii);
    std::transform(result.begin() + static_cast<std::ptrdiff_t>(start), result.end(),
                   result.begin() + static_cast<std::ptrdiff_t>(start), asciiLowerCase);
}

void append(std::string& result, UChar32 codePoint) {
    char bytes[U8_MAX_LENGTH];
    int length = 0;
    U8_APPEND_UNSAFE(bytes, length, codePoint);
    result.append(bytes, static_cast<std::size_t>(length));
}

// Composition of Hangul: the Unicode Standard, section 3.12.
namespace Hangul {

constexpr UChar32 firstSyllable = 0xAC00;
constexpr UChar32 firstLead = 0x1100;
constexpr UChar32 firstVowel = 0x1161;
constexpr UChar32 beforeFirstTail = 0x11A7;
constexpr int leadCount = 19;
constexpr int vowelCount = 21;
constexpr int tailCount = 28;  // "none" among them

/// What two neighbours compose, or none (0).
UChar32 composed(UChar32 left, UChar32 right) {
    const int lead = left - firstLead;
    const int vowel = right - firstVowel;
    if (lead >= 0 && lead < leadCount && vowel >= 0 && vowel < vowelCount) {
        return firstSyllable + (lead * vowelCount + vowel) * tailCount;
    }
    const int syllable = left - firstSyllable;
    const int tail = right - beforeFirstTail;
    const bool isOpen = syllable >= 0 && syllable < leadCount * vowelCount * tailCount && syllable % tailCount == 0;
    return isOpen && tail > 0 && tail < tailCount ? left + tail : 0;
}

/// Appends a vowel or a tail, composed with the end of the result where the two belong together.
void append(std::string& result, UChar32 letter) {
    const auto [last, start] = result.empty() ? DecodedBack{} : decodeLast(result);
    if (const UChar32 syllable = composed(last, letter); syllable != 0) {
        result.resize(start);
        letter = syllable;
    }
    Text::append(result, letter);
}

bool isVowelOrTail(UChar32 codePoint) {
    return codePoint >= firstVowel && codePoint < beforeFirstTail + tailCount;
}

}  // namespace Hangul

bool isDropped(UChar32 codePoint) {
    constexpr UChar32 zeroWidthSpace = 0x200B;
    constexpr UChar32 wordJoiner = 0x2060;
    constexpr UChar32 byteOrderMark = 0xFEFF;
    if (codePoint < 0x80) return false;
    return codePoint == zeroWidthSpace || codePoint == wordJoiner || codePoint == byteOrderMark ||
           u_hasBinaryProperty(codePoint, UCHAR_BIDI_CONTROL);
}

bool isBlank(UChar32 codePoint) {
    if (codePoint < 0x80) return codePoint <= ' ' || codePoint == 0x7F;
    return u_isUWhiteSpace(codePoint) || u_charType(codePoint) == U_CONTROL_CHAR;
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
    CharacterBorders borders(text);
    std::size_t width = 0;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = borders.after(start);
        width += characterWidth(text.substr(start, end - start));
        start = end;
    }
    return width;
}

std::size_t characterCount(std::string_view text) {
    CharacterBorders borders(text);
    std::size_t count = 0;
    for (std::size_t position = 0; position < text.size(); position = borders.after(position))
        ++count;
    return count;
}

std::string_view prefix(std::string_view text, std::size_t count) {
    return text.substr(0, endOfPrefix(text, count));
}

std::string_view suffix(std::string_view text, std::size_t count) {
    // Going back, ICU looks for a safe place to start again and again, in a row of flags each time from its beginning:
    // 5 s for the last 100,000 characters of 1 MB. Counting from the front is a few milliseconds always.
    constexpr std::size_t mostGoneBack = 256;
    if (count > mostGoneBack) {
        const std::size_t all = characterCount(text);
        return all <= count ? text : text.substr(endOfPrefix(text, all - count));
    }
    CharacterBorders borders(text);
    std::size_t start = text.size();
    for (; count > 0 && start > 0; --count)
        start = borders.before(start);
    return text.substr(start);
}

std::string truncated(std::string_view text, std::size_t count, std::string_view ellipsis) {
    if (endOfPrefix(text, count) == text.size()) return std::string(text);
    const std::string_view shownEllipsis = prefix(ellipsis, count);
    return std::string(prefix(text, count - characterCount(shownEllipsis))).append(shownEllipsis);
}

std::string folded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t plainEnd = asciiEnd(text, position);
        appendLowerCase(result, text.substr(position, plainEnd - position));
        if (plainEnd == text.size()) break;
        const auto [codePoint, end] = decode(text, plainEnd);
        position = end;
        if (codePoint < 0) {
            result += replacementCharacter;
        } else if (const auto entry = FoldTable::entryOf(static_cast<char32_t>(codePoint)); entry != 0) {
            result += FoldTable::textOf(entry);
        } else if (Hangul::isVowelOrTail(codePoint)) {
            Hangul::append(result, codePoint);
        } else {
            result += text.substr(plainEnd, end - plainEnd);
        }
    }
    return result;
}

bool containsFolded(std::string_view text, std::string_view foldedNeedle) {
    return folded(text).find(foldedNeedle) != std::string::npos;
}

std::string caseFolded(std::string_view text) {
    std::string result;
    if (asciiEnd(text, 0) == text.size()) {
        appendLowerCase(result, text);
        return result;
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::StringByteSink<std::string> sink(&result);
    icu::CaseMap::utf8Fold(U_FOLD_CASE_DEFAULT, text, sink, nullptr, status);
    return U_SUCCESS(status) ? result : sanitizedUtf8(text);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a == b) return true;
    if (asciiEnd(a, 0) < a.size() || asciiEnd(b, 0) < b.size()) return caseFolded(a) == caseFolded(b);
    return std::ranges::equal(a, b, {}, asciiLowerCase, asciiLowerCase);
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty()) {
        const auto [codePoint, end] = decode(text, 0);
        if (codePoint < 0 || !u_isUWhiteSpace(codePoint)) break;
        text.remove_prefix(end);
    }
    while (!text.empty()) {
        const auto [codePoint, start] = decodeLast(text);
        if (codePoint < 0 || !u_isUWhiteSpace(codePoint)) break;
        text = text.substr(0, start);
    }
    return text;
}

std::string oneLine(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool afterBlank = false;
    for (std::size_t position = 0; position < text.size();) {
        const auto [codePoint, end] = decode(text, position);
        const std::string_view bytes = codePoint < 0 ? replacementCharacter : text.substr(position, end - position);
        position = end;
        if (codePoint >= 0 && isDropped(codePoint)) continue;
        if (codePoint >= 0 && isBlank(codePoint)) {
            afterBlank = true;
            continue;
        }
        if (afterBlank && !result.empty()) result += ' ';
        afterBlank = false;
        result += bytes;
    }
    return result;
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t position = asciiEnd(text, 0); position < text.size(); position = asciiEnd(text, position)) {
        const auto [codePoint, end] = decode(text, position);
        if (codePoint < 0) return false;
        position = end;
    }
    return true;
}

std::string sanitizedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const auto [codePoint, end] = decode(text, position);
        result += codePoint < 0 ? replacementCharacter : text.substr(position, end - position);
        position = end;
    }
    return result;
}

}  // namespace orvane::Text
