#include <gtest/gtest.h>

#include <string>

#include "TerminalEmulator/Engine/ColorSpec.h"
#include "TerminalEmulator/Engine/Palette.h"

namespace orvane {
namespace {

TEST(ColorSpec, ReadsWhatProgramsWriteAndTellsItInOneForm) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"rgb:f/8/0", "rgb:ffff/8888/0000"},
        {"rgb:fF/80/00", "rgb:ffff/8080/0000"},
        {"rgb:f00/fff/001", "rgb:f0f0/ffff/0000"},
        {"rgb:1234/ffff/00ff", "rgb:1212/ffff/0000"},
        {"RGB:1/22/333", "rgb:1111/2222/3333"},
        {"#fa0", "rgb:f0f0/a0a0/0000"},
        {"#12aBff", "rgb:1212/abab/ffff"},
        {"#123456789", "rgb:1212/4545/7878"},
        {"#123456789abc", "rgb:1212/5656/9a9a"},
        {"rgbi:1/0.5/0", "rgb:ffff/8080/0000"},
        {"Light Steel Blue", "rgb:b0b0/c4c4/dede"},
        {"red3", "rgb:cdcd/0000/0000"},
        {"yellowgreen", "rgb:9a9a/cdcd/3232"},
        {"aliceblue", "rgb:f0f0/f8f8/ffff"},
        {"Gray50", "rgb:7f7f/7f7f/7f7f"},
        {"grey100", "rgb:ffff/ffff/ffff"},
        // No colours.
        {"", ""},
        {"rgb:", ""},
        {"rgb:1/2", ""},
        {"rgb:1/2/", ""},
        {"rgb:1/2/3/4", ""},
        {"rgb:12345/1/1", ""},
        {"rgb:-1/1/1", ""},
        {"rgb:0x1/1/1", ""},
        {"#", ""},
        {"#12", ""},
        {"#1234", ""},
        {"#123456789abcdef", ""},
        {"#ggg", ""},
        {"rgbi:1.5/0/0", ""},
        {"rgbi:nan/0/0", ""},
        {"gray101", ""},
        {"gray-1", ""},
        {"nosuchcolour", ""},
    };
    for (const Case& row : cases) {
        const auto color = ColorSpec::parse(row.text);
        EXPECT_EQ(color ? ColorSpec::format(*color) : "", row.expected) << row.text;
    }
    EXPECT_FALSE(ColorSpec::parse(std::string(100'000, ' ') + "red"));
}

int brightness(const TerminalColor& color) {
    return color.red + color.green + color.blue;
}

TEST(Palette, XtermsCubeAndRampAreFixed) {
    const auto colors = paletteColors(Ansi256PaletteStrategy::xterm, PaletteTheme::standard);
    EXPECT_EQ(colors[16], TerminalColor::fromBytes(0, 0, 0));
    EXPECT_EQ(colors[16 + 36 + 12 + 3], TerminalColor::fromBytes(95, 135, 175));
    EXPECT_EQ(colors[231], TerminalColor::fromBytes(255, 255, 255));
    EXPECT_EQ(colors[232], TerminalColor::fromBytes(8, 8, 8));
    EXPECT_EQ(colors[255], TerminalColor::fromBytes(238, 238, 238));
}

TEST(Palette, BlendsHaveTheBaseColoursAtTheCornersOfTheCube) {
    const PaletteTheme& theme = PaletteTheme::standard;
    const auto colors = paletteColors(Ansi256PaletteStrategy::base16Lab, theme);
    const std::size_t corners[] = {0, 180, 30, 210, 5, 185, 35, 215};
    EXPECT_EQ(colors[16 + corners[0]], theme.background);
    EXPECT_EQ(colors[16 + corners[7]], theme.foreground);
    for (std::size_t i = 1; i < 7; ++i)
        EXPECT_EQ(colors[16 + corners[i]], theme.base[i]) << i;
    for (std::size_t i = 233; i < 256; ++i)
        EXPECT_GT(brightness(colors[i]), brightness(colors[i - 1])) << i;
    EXPECT_GT(brightness(colors[232]), brightness(theme.background));
    EXPECT_LT(brightness(colors[255]), brightness(theme.foreground));

    // Between black and white Lab runs straight through the greys: L* of 50 is sRGB 119.
    PaletteTheme greys{.base = {}, .foreground = TerminalColor::fromBytes(255, 255, 255), .background = {}};
    const TerminalColor middle = paletteColors(Ansi256PaletteStrategy::base16Lab, greys)[243];
    EXPECT_EQ(middle, TerminalColor::fromBytes(114, 114, 114)) << ColorSpec::format(middle);  // 12/25: L* 48
}

TEST(Palette, OnlyTheHarmoniousOneTurnsRoundWithALightTheme) {
    PaletteTheme light = PaletteTheme::standard;
    std::swap(light.foreground, light.background);
    EXPECT_EQ(paletteColors(Ansi256PaletteStrategy::base16Lab, light),
              paletteColors(Ansi256PaletteStrategy::base16Lab, PaletteTheme::standard));
    const auto colors = paletteColors(Ansi256PaletteStrategy::base16LabHarmonious, light);
    EXPECT_EQ(colors[16], light.background);
    EXPECT_EQ(colors[231], light.foreground);
    EXPECT_LT(brightness(colors[255]), brightness(colors[232]));
}

}  // namespace
}  // namespace orvane
