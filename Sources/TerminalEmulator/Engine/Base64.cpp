#include "TerminalEmulator/Engine/Base64.h"

#include <array>
#include <cstdint>

namespace orvane::Base64 {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 64;

constexpr std::array<std::uint8_t, 256> digits = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return values;
}();

/// The text without its padding; nothing when that is longer than it may be.
std::optional<std::string_view> withoutPadding(std::string_view text) {
    const std::size_t end = text.find_last_not_of('=') + 1;
    const std::size_t padding = text.size() - end;
    const std::size_t wanted = (4 - end % 4) % 4;
    if (wanted == 3 || padding > wanted) return std::nullopt;
    return text.substr(0, end);
}

}  // namespace

std::string encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    std::uint32_t bits = 0;
    int bitCount = 0;
    for (const char byte : bytes) {
        bits = (bits << 8 | static_cast<unsigned char>(byte)) & 0xFFFF;
        for (bitCount += 8; bitCount >= 6; bitCount -= 6)
            text += alphabet[bits >> (bitCount - 6) & 0x3F];
    }
    if (bitCount > 0) text += alphabet[bits << (6 - bitCount) & 0x3F];
    text.resize((text.size() + 3) / 4 * 4, '=');
    return text;
}

std::optional<std::string> decode(std::string_view text) {
    const auto core = withoutPadding(text);
    if (!core) return std::nullopt;
    std::string bytes;
    bytes.reserve(core->size() / 4 * 3 + 2);
    std::uint32_t bits = 0;
    int bitCount = 0;
    for (const char character : *core) {
        const std::uint8_t digit = digits[static_cast<unsigned char>(character)];
        if (digit == noDigit) return std::nullopt;
        bits = (bits << 6 | digit) & 0xFFFF;
        bitCount += 6;
        if (bitCount < 8) continue;
        bitCount -= 8;
        bytes += static_cast<char>(bits >> bitCount & 0xFF);
    }
    return bytes;
}

}  // namespace orvane::Base64
