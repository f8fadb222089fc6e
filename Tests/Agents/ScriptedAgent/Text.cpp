#include "ScriptedAgent/Text.h"

#include <wchar.h>

#include <algorithm>
#include <charconv>

namespace orvane::scripted {
namespace {

/// What is next in a text: a control sequence or one character.
struct Unit {
    std::size_t size = 1;
    int cells = 0;
    bool isSequence = false;
};

std::size_t sequenceSize(std::string_view text) {
    if (text.size() < 2) return 1;
    if (text[1] == ']') {
        const std::size_t end = text.find('\a');
        return end == std::string_view::npos ? text.size() : end + 1;
    }
    if (text[1] != '[') return 2;
    std::size_t end = 2;
    while (end < text.size() && (text[end] < 0x40 || text[end] > 0x7e))
        ++end;
    return std::min(end + 1, text.size());
}

std::size_t characterSize(unsigned char lead) {
    if (lead < 0xc0) return 1;
    if (lead < 0xe0) return 2;
    return lead < 0xf0 ? 3 : 4;
}

wchar_t decoded(std::string_view character) {
    if (character.size() < 2) return static_cast<unsigned char>(character[0]);
    wchar_t code = static_cast<unsigned char>(character[0]) & (0xff >> (character.size() + 1));
    for (const char byte : character.substr(1))
        code = code << 6 | (byte & 0x3f);
    return code;
}

Unit unit(std::string_view text) {
    if (text[0] == '\x1b') return {.size = sequenceSize(text), .cells = 0, .isSequence = true};
    if (text[0] == cursorMark) return {.size = 1, .cells = 0, .isSequence = true};
    const std::size_t size = std::min(characterSize(static_cast<unsigned char>(text[0])), text.size());
    return {.size = size, .cells = std::max(0, wcwidth(decoded(text.substr(0, size))))};
}

int hangingIndent(std::string_view row) {
    const std::size_t start = std::min(row.find_first_not_of(' '), row.size());
    const std::string_view rest = row.substr(start);
    const std::size_t bullet = rest.find(' ');
    const bool hasBullet = bullet != std::string_view::npos && width(rest.substr(0, bullet)) == 1;
    return static_cast<int>(start) + (hasBullet ? 2 : 0);
}

}  // namespace

int width(std::string_view text) {
    int cells = 0;
    while (!text.empty()) {
        const Unit next = unit(text);
        cells += next.cells;
        text.remove_prefix(next.size);
    }
    return cells;
}

std::string clipped(std::string_view text, int cells) {
    std::string result;
    while (!text.empty()) {
        const Unit next = unit(text);
        cells -= next.cells;
        if (cells >= 0 || next.isSequence) result += text.substr(0, next.size);
        text.remove_prefix(next.size);
    }
    return result;
}

std::vector<std::string> wrapped(std::string_view row, int cells) {
    if (width(row) <= cells) return {std::string(row)};
    const std::string indent(hangingIndent(row), ' ');
    std::vector<std::string> rows;
    std::string current;
    bool isFirst = true;
    for (const std::string& word : split(row, ' ')) {
        if (!isFirst && width(current) + 1 + width(word) > cells) {
            rows.push_back(std::move(current));
            current = indent + word;
        } else {
            current += (isFirst ? "" : " ") + word;
        }
        isFirst = false;
    }
    rows.push_back(std::move(current));
    return rows;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.emplace_back(text);
    return parts;
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

std::string_view takeWord(std::string_view& rest) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest = trimmed(rest.substr(word.size()));
    return word;
}

bool matches(std::string_view text, std::string_view pattern) {
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos) return text == pattern;
    if (!text.starts_with(pattern.substr(0, star))) return false;
    for (std::size_t skip = star; skip <= text.size(); ++skip) {
        if (matches(text.substr(skip), pattern.substr(star + 1))) return true;
    }
    return false;
}

std::string unescaped(std::string_view text) {
    constexpr std::string_view letters = "earnts\\";
    constexpr std::string_view values = "\x1b\a\r\n\t \\";
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        const char letter = text[++at];
        unsigned code = 0;
        if (const std::size_t known = letters.find(letter); known != std::string_view::npos) {
            result += values[known];
        } else if (letter == 'x' && at + 2 < text.size() &&
                   std::from_chars(&text[at + 1], &text[at + 1] + 2, code, 16).ec == std::errc()) {
            result += static_cast<char>(code);
            at += 2;
        } else {
            (result += '\\') += letter;
        }
    }
    return result;
}

std::string jsonEscaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') {
            (result += '\\') += byte;
        } else if (byte == '\n') {
            result += "\\n";
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            ((result += "\\u00") += digits[byte >> 4]) += digits[byte & 15];
        } else {
            result += byte;
        }
    }
    return result;
}

}  // namespace orvane::scripted
