#include "OrvaneShell/View/NearestColor.h"

#include <algorithm>
#include <array>

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

bool isLight(const Rgb& color) {
    // Luma of ITU-R BT.601, in thousandths.
    return 299 * color.red + 587 * color.green + 114 * color.blue > 128'000;
}

}  // namespace orvane::NearestColor
