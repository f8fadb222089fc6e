#pragma once

#include <cstdint>

/// Colours for terminals that have fewer: the one with the least distance in red, green and blue, as xterm has them.
namespace orvane::NearestColor {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Rgb&) const = default;
};

/// What xterm shows for an indexed colour.
Rgb rgb(std::uint8_t index);

/// Of the cube and the grey ramp, 16 to 255. The lower ones are left out: everybody sets them as they like.
std::uint8_t ofCubeAndRamp(const Rgb& color);

/// Of the lowest sixteen.
std::uint8_t ofSixteen(const Rgb& color);

/// Whether black rather than white is read easily on it.
bool isLight(const Rgb& color);

}  // namespace orvane::NearestColor
