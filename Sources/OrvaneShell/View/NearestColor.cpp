#include "OrvaneShell/View/NearestColor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvane::NearestColor {

namespace {

constexpr std::array<std::uint8_t, 6> levels{0, 95, 135, 175, 215, 255};

// XTerm-col.ad of xterm, colours 0 to 15.
constexpr std::array<Rgb, 16> base{{{0, 0, 0},
                                    {205, 0, 0},
                                    {0, 205, 0},
                                    {205, 205, 0},
                                    {0, 0, 238},
                                    {205, 0, 205},
                                    {0, 205, 205},
                                    {229, 229, 229},
                                    {127, 127, 127},
                                    {255, 0, 0},
                                    {0, 255, 0},
                                    {255, 255, 0},
                                    {92, 92, 255},
                                    {255, 0, 255},
                                    {0, 255, 255},
                                    {255, 255, 255}}};

int distance(const Rgb& a, const Rgb& b) {
    const int red = a.red - b.red;
    const int green = a.green - b.green;
    const int blue = a.blue - b.blue;
    return red * red + green * green + blue * blue;
}

/// The nearest of the cube's levels: they are 40 apart but for the first two.
int level(int value) {
    if (value < 48) return 0;
    if (value < 115) return 1;
    return std::min((value - 35) / 40, 5);
}

/// Relative, from 0 to 1, of a colour in sRGB.
double luminance(const Rgb& color) {
    const auto linear = [](std::uint8_t part) {
        const double value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

}  // namespace

Rgb rgb(std::uint8_t index) {
    if (index < 16) return base[index];
    if (index >= 232) {
        const auto grey = static_cast<std::uint8_t>(8 + 10 * (index - 232));
        return {grey, grey, grey};
    }
    const unsigned place = index - 16U;
    return {levels[place / 36], levels[place / 6 % 6], levels[place % 6]};
}

std::uint8_t ofCubeAndRamp(const Rgb& color) {
    const int place = 36 * level(color.red) + 6 * level(color.green) + level(color.blue);
    const auto cube = static_cast<std::uint8_t>(16 + place);
    const int average = (color.red + color.green + color.blue) / 3;
    const auto ramp = static_cast<std::uint8_t>(232 + std::clamp((average - 3) / 10, 0, 23));
    return distance(rgb(ramp), color) < distance(rgb(cube), color) ? ramp : cube;
}

std::uint8_t ofSixteen(const Rgb& color) {
    const auto* const nearest =
        std::ranges::min_element(base, {}, [&](const Rgb& candidate) { return distance(candidate, color); });
    return static_cast<std::uint8_t>(nearest - base.begin());
}

double contrast(const Rgb& a, const Rgb& b) {
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

bool isLight(const Rgb& color) {
    // Luma of ITU-R BT.601, in thousandths.
    return 299 * color.red + 587 * color.green + 114 * color.blue > 128'000;
}

}  // namespace orvane::NearestColor
