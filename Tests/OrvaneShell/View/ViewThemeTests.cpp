#include "OrvaneShell/View/ViewTheme.h"

#include <gtest/gtest.h>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/NearestColor.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

using Choice = ViewTheme::Choice;
using Color = Attribute::Color;
using Colors = OuterTerminal::Colors;
using Ground = ViewTheme::Ground;
using NearestColor::Rgb;
using Style = ViewLook::Style;

const std::vector<Attribute> looks{ViewLook::plain,
                                   ViewLook::dim,
                                   ViewLook::bold,
                                   ViewLook::key,
                                   ViewLook::colored(ViewLook::red),
                                   ViewLook::colored(ViewLook::green),
                                   ViewLook::colored(ViewLook::yellow, Style::bold),
                                   ViewLook::colored(ViewLook::blue),
                                   ViewLook::colored(ViewLook::cyan),
                                   ViewLook::ofHex("FFFF00"),
                                   ViewLook::ofHex("101010"),
                                   ViewLook::ofHex("0000FF"),
                                   ViewLook::ofHex("808080")};

/// What a terminal of that background shows; none for a look that leaves its brightness to the terminal.
std::optional<Rgb> shown(const Attribute& look, Ground ground) {
    if ((look.style & Style::dim) != Style::none) return std::nullopt;
    if (const auto* indexed = std::get_if<Color::Ansi256>(&look.fg.value)) return NearestColor::rgb(indexed->code);
    if (const auto* direct = std::get_if<Color::TrueColor>(&look.fg.value))
        return Rgb{direct->red, direct->green, direct->blue};
    return ground == Ground::dark ? Rgb{255, 255, 255} : Rgb{};
}

TEST(ViewThemeTest, EveryColorReadsOnItsGroundAndOnBars) {
    for (const Ground ground : {Ground::dark, Ground::light}) {
        for (const Colors colors : {Colors::sixteen, Colors::indexed, Colors::direct}) {
            const ViewTheme theme = ViewTheme::of(Choice::automatic, ground, colors);
            // The least that xterm's sixteen reach: bright blue on black.
            const double least = colors == Colors::sixteen ? 4.3 : 4.5;
            for (const Attribute& look : looks) {
                const Attribute themed = theme.applied(look);
                EXPECT_EQ(themed.bg, Color::defaultColor());
                const auto color = shown(themed, ground);
                ASSERT_TRUE(color || colors == Colors::sixteen) << "dim text is a grey that is known";
                if (!color) continue;
                const Rgb behind = ground == Ground::dark ? Rgb{} : Rgb{255, 255, 255};
                EXPECT_GE(NearestColor::contrast(*color, behind), least)
                    << "ground " << int(ground) << " colours " << int(colors) << " look " << (&look - looks.data());
                // A bar swaps the two, and has no dim part that would break it.
                const Attribute bar = theme.applied(ViewLook::onBar(look));
                EXPECT_NE(bar.style & Style::inverse, Style::none);
                EXPECT_EQ(bar.style & Style::dim, Style::none);
            }
        }
    }
}

TEST(ViewThemeTest, WithoutColorsWhatTheySetApartIsBold) {
    const ViewTheme theme = ViewTheme::of(Choice::none, Ground::light, Colors::direct);
    for (const Attribute& look : looks) {
        const Attribute themed = theme.applied(look);
        EXPECT_EQ(themed.fg, Color::defaultColor());
        EXPECT_EQ(themed.bg, Color::defaultColor());
        const bool wasColored = look.fg != Color::defaultColor();
        EXPECT_TRUE(!wasColored || (themed.style & Style::bold) != Style::none);
    }
    EXPECT_EQ(theme, ViewTheme::of(Choice::dark, Ground::light, Colors::none)) << "colours that are not there";
}

TEST(ViewThemeTest, AChoiceGoesBeforeWhatTheTerminalTells) {
    EXPECT_EQ(ViewTheme::of(Choice::automatic, Ground::light, Colors::indexed).ground, Ground::light);
    EXPECT_EQ(ViewTheme::of(Choice::dark, Ground::light, Colors::indexed).ground, Ground::dark);
    EXPECT_EQ(ViewTheme::of(Choice::light, Ground::dark, Colors::indexed).ground, Ground::light);
    EXPECT_EQ(ViewTheme::choiceNamed("light"), Choice::light);
    EXPECT_EQ(ViewTheme::choiceNamed("auto"), Choice::automatic);
    EXPECT_EQ(ViewTheme::choiceNamed("Light"), std::nullopt);
}

class Nobody final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

TEST(ViewThemeTest, PensFollowItAndThePanesOfProgramsDoNot) {
    Canvas canvas(10, 2);
    canvas.theme = ViewTheme::of(Choice::none, Ground::dark, Colors::direct);
    CanvasPen pen(canvas, {0, 0, 10, 2});
    pen.text(0, 0, "x", ViewLook::colored(ViewLook::red));
    pen.fill({1, 0, 1, 1}, ViewLook::colored(ViewLook::red), U'x');
    Nobody nobody;
    Terminal terminal(nobody, {.cols = 10, .rows = 1});
    terminal.feed("\x1b[31mx");
    pen.terminal({0, 1, 10, 1}, terminal);
    EXPECT_EQ(canvas.row(0)[0].unpack().attribute.fg, Color::defaultColor());
    EXPECT_EQ(canvas.row(0)[1].unpack().attribute.fg, Color::defaultColor());
    EXPECT_EQ(canvas.row(1)[0].unpack().attribute.fg, Color::ansi256(1));
}

}  // namespace
}  // namespace orvane
