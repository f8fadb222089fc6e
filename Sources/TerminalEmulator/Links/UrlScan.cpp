#include "TerminalEmulator/Links/UrlScan.h"

#include <algorithm>
#include <array>
#include <string>

#include "TerminalEmulator/CharacterClass.h"

namespace orvane::UrlScan {
namespace {

constexpr std::array<std::u32string_view, 20> schemes = {
    U"https://", U"http://", U"file://", U"mailto:",    U"ftp://",       U"ftps://",     U"sftp://",
    U"ssh://",   U"git://",  U"irc://",  U"git+ssh://", U"git+https://", U"git+http://", U"ircs://",
    U"ws://",    U"wss://",  U"smb://",  U"gemini://",  U"gopher://",    U"vnc://"};
constexpr std::u32string_view fileScheme = U"file://";
constexpr std::u32string_view mailScheme = U"mailto:";
// A run of addresses without "@" is read once for each of them.
constexpr std::size_t longestMailAddress = 1024;
constexpr std::u32string_view marks = U"-._~:/?#[]@!$&'()*+,;=%";
constexpr std::u32string_view trailingMarks = U".,:;!?'*([";

constexpr bool isAsciiAlphanumeric(char32_t scalar) {
    return (scalar >= U'a' && scalar <= U'z') || (scalar >= U'A' && scalar <= U'Z') ||
           (scalar >= U'0' && scalar <= U'9');
}

constexpr bool isPictograph(char32_t scalar) {
    return (scalar >= 0x2600 && scalar <= 0x27BF) || (scalar >= 0x1F000 && scalar <= 0x1FAFF);
}

constexpr char32_t lowered(char32_t scalar) {
    return scalar >= U'A' && scalar <= U'Z' ? scalar + (U'a' - U'A') : scalar;
}

std::u32string_view schemeAt(std::u32string_view text) {
    for (const std::u32string_view scheme : schemes) {
        if (std::ranges::equal(text.substr(0, scheme.size()), scheme, {}, lowered)) return scheme;
    }
    return {};
}

bool startsHost(std::u32string_view rest, std::u32string_view scheme) {
    if (rest.empty()) return false;
    const char32_t first = rest.front();
    if (first == U'/') return scheme == fileScheme;
    return first == U'[' || (isUrlCharacter(first) && characterClass(first) == CharacterClass::letter);
}

/// Where the run of an address ends: at the first character that cannot be part of it, or a bracket that closes none.
std::size_t runEnd(std::u32string_view text, std::size_t at, char32_t quote) {
    std::u32string open;
    for (; at < text.size() && isUrlCharacter(text[at]) && text[at] != quote; ++at) {
        const char32_t scalar = text[at];
        if (scalar == U'(' || scalar == U'[') open += scalar;
        if (scalar != U')' && scalar != U']') continue;
        if (open.empty() || open.back() != (scalar == U')' ? U'(' : U'[')) break;
        open.pop_back();
    }
    return at;
}

/// The end of the address that starts at `begin`; nothing when none does.
std::optional<std::size_t> addressEnd(std::u32string_view text, std::size_t begin) {
    const std::u32string_view scheme = schemeAt(text.substr(begin));
    if (scheme.empty() || (begin > 0 && isAsciiAlphanumeric(text[begin - 1]))) return std::nullopt;
    const std::size_t rest = begin + scheme.size();
    if (!startsHost(text.substr(rest), scheme)) return std::nullopt;
    const char32_t quote = begin > 0 && text[begin - 1] == U'\'' ? U'\'' : U'\0';
    if (scheme == mailScheme) text = text.substr(0, rest + longestMailAddress);
    std::size_t end = runEnd(text, rest, quote);
    while (end > rest && trailingMarks.contains(text[end - 1]))
        --end;
    if (end == rest) return std::nullopt;
    const std::u32string_view body = text.substr(rest, end - rest);
    if (scheme == mailScheme && !body.contains(U'@')) return std::nullopt;
    return end;
}

}  // namespace

bool isUrlCharacter(char32_t scalar) {
    if (scalar < 0x80) return isAsciiAlphanumeric(scalar) || (scalar != 0 && marks.contains(scalar));
    return characterClass(scalar) == CharacterClass::letter && !isPictograph(scalar);
}

bool startsAddress(std::u32string_view text) {
    return !schemeAt(text).empty();
}

std::optional<Range> addressAt(std::u32string_view text, std::size_t index) {
    for (std::size_t begin = 0; begin <= index && begin < text.size();) {
        const std::optional<std::size_t> end = addressEnd(text, begin);
        if (end && index < *end) return Range{begin, *end};
        begin = end.value_or(begin + 1);
    }
    return std::nullopt;
}

}  // namespace orvane::UrlScan
