#include "TerminalEmulator/Engine/Palette.h"

#include <algorithm>
#include <utility>

#include "TerminalEmulator/Engine/LabColor.h"

namespace orvane {
namespace {

using Colors = std::array<TerminalColor, 256>;

constexpr std::size_t cubeStart = 16;
constexpr std::size_t rampStart = 232;
constexpr std::size_t rampSteps = 24;
constexpr std::size_t cubeSide = 6;

constexpr TerminalColor fromHex(unsigned hex) {
    return TerminalColor::fromBytes(static_cast<std::uint8_t>(hex >> 16), static_cast<std::uint8_t>(hex >> 8),
                                    static_cast<std::uint8_t>(hex));
}

constexpr TerminalColor grey(std::size_t level) {
    const auto byte = static_cast<std::uint8_t>(level);
    return TerminalColor::fromBytes(byte, byte, byte);
}

/// The entries of the cube in their order; `colorAt` gets red, green and blue from 0 to 5.
template <typename ColorAt>
void fillCube(Colors& colors, const ColorAt& colorAt) {
    for (std::size_t i = 0; i < cubeSide * cubeSide * cubeSide; ++i)
        colors[cubeStart + i] = colorAt(i / (cubeSide * cubeSide), i / cubeSide % cubeSide, i % cubeSide);
}

void fillAsXterm(Colors& colors) {
    constexpr std::array<std::uint8_t, cubeSide> levels{0, 95, 135, 175, 215, 255};
    fillCube(colors, [&](std::size_t red, std::size_t green, std::size_t blue) {
        return TerminalColor::fromBytes(levels[red], levels[green], levels[blue]);
    });
    for (std::size_t i = 0; i < rampSteps; ++i)
        colors[rampStart + i] = grey(8 + 10 * i);
}

/// The cube with base colours at its corners, and the ramp between the ends of its diagonal.
void fillBlended(Colors& colors, const PaletteTheme& theme, const TerminalColor& first, const TerminalColor& last) {
    const auto base = [&](std::size_t index) { return LabColor::from(theme.base[index]); };
    const LabColor start = LabColor::from(first);
    const LabColor end = LabColor::from(last);
    // By green + 2 * red, each corner without blue beside the one with it.
    const std::array<std::pair<LabColor, LabColor>, 4> edges{
        {{start, base(4)}, {base(2), base(6)}, {base(1), base(5)}, {base(3), end}}};
    fillCube(colors, [&](std::size_t red, std::size_t green, std::size_t blue) {
        const auto share = [](std::size_t level) { return static_cast<double>(level) / (cubeSide - 1); };
        const auto edge = [&](std::size_t i) { return edges[i].first.mixed(edges[i].second, share(blue)); };
        const LabColor withoutRed = edge(0).mixed(edge(1), share(green));
        return withoutRed.mixed(edge(2).mixed(edge(3), share(green)), share(red)).toTerminalColor();
    });
    for (std::size_t i = 0; i < rampSteps; ++i)
        colors[rampStart + i] =
            start.mixed(end, static_cast<double>(i + 1) / static_cast<double>(rampSteps + 1)).toTerminalColor();
}

bool isLight(const PaletteTheme& theme) {
    return LabColor::from(theme.background).lightness > LabColor::from(theme.foreground).lightness;
}

}  // namespace

constexpr PaletteTheme PaletteTheme::standard{
    .base = {fromHex(0x1B1D23), fromHex(0xE0565B), fromHex(0x6FBF73), fromHex(0xD9A441), fromHex(0x5A9BE6),
             fromHex(0xB57EDC), fromHex(0x4DB6AC), fromHex(0xC8CCD4), fromHex(0x5C6370), fromHex(0xFF7B80),
             fromHex(0x95D998), fromHex(0xF2C46D), fromHex(0x86BBF7), fromHex(0xD0A6F0), fromHex(0x7FD6CD),
             fromHex(0xF5F7FA)},
    .foreground = fromHex(0xD5D8DF),
    .background = fromHex(0x14161A),
};

std::array<TerminalColor, 256> paletteColors(Ansi256PaletteStrategy strategy, const PaletteTheme& theme) {
    Colors colors{};
    std::ranges::copy(theme.base, colors.begin());
    switch (strategy) {
        case Ansi256PaletteStrategy::xterm:
            fillAsXterm(colors);
            break;
        case Ansi256PaletteStrategy::base16Lab:
            if (isLight(theme))
                fillBlended(colors, theme, theme.foreground, theme.background);
            else
                fillBlended(colors, theme, theme.background, theme.foreground);
            break;
        case Ansi256PaletteStrategy::base16LabHarmonious:
            fillBlended(colors, theme, theme.background, theme.foreground);
            break;
    }
    return colors;
}

}  // namespace orvane
