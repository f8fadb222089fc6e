#include "OrvaneShell/View/CellLook.h"

#include <gtest/gtest.h>

#include "OrvaneShell/View/NearestColor.h"
#include "TerminalEmulator/Buffer/Pen.h"

namespace orvane {

namespace {

using Color = Attribute::Color;
using Style = Attribute::CharacterStyle;
using Underline = Attribute::UnderlineStyle;
using Colors = OuterTerminal::Colors;

std::string sgr(const Attribute& from, const Attribute& to, const OuterTerminal& outer) {
    std::string out;
    appendSgr(CellLook::of(Pen(from).cell(), outer), CellLook::of(Pen(to).cell(), outer), out);
    return out.empty() ? out : out.substr(2);
}

TEST(CellLookTests, TheShorterOfDifferenceAndResetIsTaken) {
    constexpr OuterTerminal outer{.colors = Colors::direct, .styledUnderlines = true};
    const Color red = Color::ansi256(1);
    const Color pink = Color::trueColor(255, 0, 128);
    struct Case {
        Attribute from;
        Attribute to;
        const char* sgr;
    };
    const Case cases[] = {
        {{.fg = red}, {.fg = red}, ""},
        {{.fg = red, .style = Style::bold}, {}, "m"},
        {{}, {.fg = red, .bg = Color::ansi256(12)}, "31;104m"},
        {{}, {.fg = Color::ansi256(200), .bg = pink}, "38;5;200;48;2;255;0;128m"},
        {{.fg = pink}, {.bg = red}, "0;41m"},
        {{.fg = pink, .style = Style::bold}, {.fg = pink, .style = Style::dim}, "22;2m"},
        {{.fg = pink, .style = Style::bold | Style::dim}, {.fg = pink, .style = Style::bold}, "22;1m"},
        {{.style = Style::inverse | Style::italic | Style::blink | Style::crossedOut},
         {.style = Style::invisible},
         "0;8m"},
        {{}, {.style = Style::underline, .underlineStyle = Underline::single}, "4m"},
        {{.underlineStyle = Underline::curly}, {.fg = pink, .underlineStyle = Underline::single}, "4;38;2;255;0;128m"},
        {{}, {.underlineStyle = Underline::dashed, .underlineColor = pink}, "4:5;58:2::255:0:128m"},
        {{.bg = pink, .underlineStyle = Underline::curly, .underlineColor = red},
         {.bg = pink, .underlineStyle = Underline::curly},
         "59m"},
        {{}, {.fg = Color::defaultInvertedColor(), .bg = Color::defaultInvertedColor()}, "7m"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(sgr(each.from, each.to, outer), each.sgr) << &each - cases;
}

TEST(CellLookTests, WhatATerminalLacksBecomesTheNearest) {
    struct Case {
        Color color;
        const char* indexed;
        const char* sixteen;
    };
    const Case cases[] = {
        {Color::trueColor(0, 0, 0), "38;5;16m", "30m"},
        {Color::trueColor(255, 255, 255), "38;5;231m", "97m"},
        {Color::trueColor(255, 0, 0), "38;5;196m", "91m"},
        {Color::trueColor(128, 128, 128), "38;5;244m", "90m"},
        {Color::trueColor(8, 8, 8), "38;5;232m", "30m"},
        {Color::trueColor(95, 135, 175), "38;5;67m", "90m"},
        {Color::trueColor(100, 130, 170), "38;5;67m", "90m"},
        {Color::trueColor(200, 10, 10), "38;5;160m", "31m"},
        {Color::ansi256(196), "38;5;196m", "91m"},
        {Color::ansi256(9), "91m", "91m"},
        {Color::ansi256(255), "38;5;255m", "37m"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(sgr({}, {.fg = each.color}, {.colors = Colors::indexed}), each.indexed) << &each - cases;
        EXPECT_EQ(sgr({}, {.fg = each.color}, {}), each.sixteen) << &each - cases;
    }
    const Attribute curly{.underlineStyle = Underline::curly, .underlineColor = Color::ansi256(3)};
    EXPECT_EQ(sgr({}, curly, {}), "4m");
    // Dark grey on darker grey is black on black with sixteen colours.
    const Attribute grey{.fg = Color::trueColor(50, 50, 50), .bg = Color::trueColor(20, 20, 20)};
    EXPECT_EQ(sgr({}, grey, {}), "97;40m");
    const Attribute hidden{.fg = Color::ansi256(1), .bg = Color::ansi256(1)};
    EXPECT_EQ(sgr({}, hidden, {}), "31;41m");
}

/// The quick way to the nearest against a look at all of them.
TEST(CellLookTests, NoOtherOfTheCubeAndTheRampIsNearer) {
    using NearestColor::Rgb;
    const auto distance = [](const Rgb& a, const Rgb& b) {
        const auto square = [](int difference) { return difference * difference; };
        return square(a.red - b.red) + square(a.green - b.green) + square(a.blue - b.blue);
    };
    for (int step = 0; step < 4096; ++step) {
        const auto part = [&](int shift) { return static_cast<std::uint8_t>((step >> shift & 15) * 17); };
        const Rgb color{part(8), part(4), part(0)};
        int least = distance(NearestColor::rgb(NearestColor::ofCubeAndRamp(color)), color);
        for (int index = 16; index < 256; ++index)
            ASSERT_LE(least, distance(NearestColor::rgb(static_cast<std::uint8_t>(index)), color)) << step << index;
    }
}

}  // namespace

}  // namespace orvane
