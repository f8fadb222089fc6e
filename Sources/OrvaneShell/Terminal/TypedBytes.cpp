#include "OrvaneShell/Terminal/TypedBytes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace orvane::TypedBytes {

namespace {

constexpr auto named = std::to_array<std::pair<char, char>>({
    {'r', '\r'},
    {'n', '\n'},
    {'t', '\t'},
    {'e', '\x1b'},
    {'\\', '\\'},
});

}  // namespace

std::expected<std::string, std::string> parse(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        if (text.front() != '\\') {
            bytes += text.front();
            text.remove_prefix(1);
            continue;
        }
        const char name = text.size() > 1 ? text[1] : '\0';
        const auto* const found = std::ranges::find(named, name, &std::pair<char, char>::first);
        if (found != named.end()) {
            bytes += found->second;
            text.remove_prefix(2);
            continue;
        }
        unsigned value = 0;
        const std::string_view digits = text.substr(0, 4).substr(name == 'x' ? 2 : text.substr(0, 4).size());
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error != std::errc() || digits.size() != 2 || end != digits.data() + 2) {
            return std::unexpected(std::string(text.substr(0, name == 'x' ? 4 : 2)));
        }
        bytes += static_cast<char>(value);
        text.remove_prefix(4);
    }
    return bytes;
}

std::string write(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code < 0x7F && byte != '\\') {
            text += byte;
        } else {
            text += fmt::format("\\x{:02x}", code);
        }
    }
    return text;
}

}  // namespace orvane::TypedBytes
