#pragma once

#include <cstdint>
#include <optional>

#include "TerminalEmulator/Buffer/Attribute.h"

/// Colours as numbers in the words of a `StoredCell`.
namespace orvane::CellColor {

/// 26 bits: the value and above it its kind (0 default, 1 indexed, 2 direct, 3 inverted default).
constexpr std::uint32_t defaultColor = 0;
constexpr std::uint32_t indexed(std::uint8_t code) {
    return 1U << 24 | code;
}
constexpr std::uint32_t direct(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return 2U << 24 | static_cast<std::uint32_t>(red) << 16 | static_cast<std::uint32_t>(green) << 8 | blue;
}
std::uint32_t packed(const Attribute::Color& color);
Attribute::Color unpacked(std::uint32_t bits);

/// 25 bits, as `StoredCell` describes them.
std::uint32_t packedUnderline(const std::optional<Attribute::Color>& color);
std::optional<Attribute::Color> unpackedUnderline(std::uint32_t bits);

}  // namespace orvane::CellColor
