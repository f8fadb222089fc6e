#include "OrvaneCore/Support/Uuid.h"

#include <cstring>

#include "OrvaneCore/Support/Random.h"

namespace orvane {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isDashPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

}  // namespace

Uuid Uuid::random() {
    std::array<std::uint8_t, 16> bytes{};
    fillRandom(bytes);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // variant 1
    return Uuid(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    std::array<std::uint8_t, 16> bytes{};
    std::size_t nibble = 0;
    for (std::size_t position = 0; position < textLength; ++position) {
        if (isDashPosition(position)) {
            if (text[position] != '-') return std::nullopt;
            continue;
        }
        const int value = hexValue(text[position]);
        if (value < 0) return std::nullopt;
        bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] << 4 | value);
        ++nibble;
    }
    return Uuid(bytes);
}

std::string Uuid::text(const char* digits) const {
    std::string result;
    result.reserve(textLength);
    for (const std::uint8_t byte : bytes_) {
        if (isDashPosition(result.size())) result += '-';
        result += digits[byte >> 4];
        result += digits[byte & 0x0F];
    }
    return result;
}

std::string Uuid::upperText() const {
    return text("0123456789ABCDEF");
}

std::string Uuid::lowerText() const {
    return text("0123456789abcdef");
}

}  // namespace orvane

std::size_t std::hash<orvane::Uuid>::operator()(const orvane::Uuid& id) const noexcept {
    // Random ids are already well mixed.
    std::size_t value = 0;
    std::memcpy(&value, id.bytes().data(), sizeof value);
    return value;
}
