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

/// From 1 for none to 21 for black on white, after the Web Content Accessibility Guidelines 2.1.
double contrast(const Rgb& a, const Rgb& b);

/// Whether black rather than white is read easily on it.
bool isLight(const Rgb& color);

}  // namespace orvane::NearestColor
