#include "OrvaneShell/View/OuterTerminal.h"

#include <gtest/gtest.h>

#include "Support/Table.h"

namespace orvane {

namespace {

/// Colours, and a letter for each ability.
std::string told(const OuterTerminal& outer) {
    using Colors = OuterTerminal::Colors;
    static constexpr std::string_view names[] = {"mono", "16", "256", "direct"};
    static_assert(static_cast<int>(Colors::direct) == 3);
    std::string text(names[static_cast<std::size_t>(outer.colors)]);
    text += outer.positionsCursor ? " " : " none ";
    for (const auto& [has, letter] : {std::pair{outer.synchronizedOutput, 's'},
                                      {outer.styledUnderlines, 'u'},
                                      {outer.hyperlinks, 'l'},
                                      {outer.cursorStyles, 'c'},
                                      {outer.eraseCharacters, 'e'},
                                      {outer.mouse, 'm'}})
        if (has) text += letter;
    if (outer.plainGlyphs == GlyphSet::console) text += " console";
    if (outer.plainGlyphs == GlyphSet::ascii) text += " ascii";
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

TEST(OuterTerminalTests, IsKnownByItsName) {
    const auto rows = table<4>(R"(
        xterm-256color  |           |      | 256 lcem
        xterm-256color  | truecolor |      | direct lcem
        xterm           |           |      | 16 lcem
        xterm-direct    |           |      | direct lcem
        xterm-mono      |           |      | mono lcem
        xterm-kitty     |           |      | direct sulcem
        foot            | truecolor |      | direct sulcem
        foot-extra      |           |      | direct sulcem
        vte-256color    |           |      | 256 lcem
        screen          |           |      | 16 cem
        screen-256color | truecolor |      | 256 cem
        screen-256color | truecolor | tmux | direct ulcem
        tmux-256color   |           | tmux | 256 ulcem
        tmux-256color   | 24bit     | tmux | direct ulcem
        linux           | truecolor |      | 16 e console
        vt100           |           |      | mono  console
        vt102           |           |      | mono  console
        vt220           |           |      | mono e console
        vt320           | yes       |      | 16 e console
        vt220           | truecolor |      | direct e console
        dumb            | truecolor |      | 16 none m
                        |           |      | 16 none m
        something       | yes       |      | 16 em
    )");
    for (const auto& [term, colorTerm, tmux, expected] : rows)
        EXPECT_EQ(told(OuterTerminal::of(term, colorTerm, !tmux.empty())), expected) << term << " " << colorTerm;
}

TEST(OuterTerminalTests, TheLocaleTellsWhichCharactersThereAre) {
    const auto rows = table<3>(R"(
        xterm |                  | all
        xterm | de_DE.UTF-8      | all
        xterm | C.utf8           | all
        xterm | sr_RS.utf8@latin | all
        xterm | C                | ascii
        linux | POSIX            | ascii
        xterm | de_DE            | ascii
        xterm | ja_JP.eucJP      | ascii
        linux | en_US.UTF-8      | console
    )");
    for (const auto& [term, locale, expected] : rows) {
        const GlyphSet glyphs = OuterTerminal::of(term, "", false, locale).plainGlyphs;
        EXPECT_EQ(glyphs == GlyphSet::all     ? "all"
                  : glyphs == GlyphSet::ascii ? "ascii"
                                              : "console",
                  expected)
            << term << " " << locale;
    }
}

}  // namespace

}  // namespace orvane
