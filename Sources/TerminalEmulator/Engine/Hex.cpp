#include "TerminalEmulator/Engine/Hex.h"

#include <charconv>

namespace orvane::Hex {

std::string encode(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

std::optional<std::string> decode(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    bytes.reserve(digits.size() / 2);
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        unsigned value = 0;
        const char* start = digits.data() + i;
        const auto [end, error] = std::from_chars(start, start + 2, value, 16);
        if (error != std::errc() || end != start + 2) return std::nullopt;
        bytes += static_cast<char>(value);
    }
    return bytes;
}

}  // namespace orvane::Hex
