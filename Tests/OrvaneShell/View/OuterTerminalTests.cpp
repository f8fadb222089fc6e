#include "OrvaneShell/View/OuterTerminal.h"

#include <gtest/gtest.h>

#include "Support/Table.h"

namespace orvane {

namespace {

/// Colours, and a letter for each ability.
std::string told(const OuterTerminal& outer) {
    using Colors = OuterTerminal::Colors;
    std::string text = outer.colors == Colors::direct ? "direct" : outer.colors == Colors::indexed ? "256" : "16";
    text += outer.positionsCursor ? " " : " none ";
    for (const auto& [has, letter] : {std::pair{outer.synchronizedOutput, 's'},
                                      {outer.styledUnderlines, 'u'},
                                      {outer.hyperlinks, 'l'},
                                      {outer.cursorStyles, 'c'},
                                      {outer.eraseCharacters, 'e'}})
        if (has) text += letter;
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

TEST(OuterTerminalTests, IsKnownByItsName) {
    const auto rows = table<4>(R"(
        xterm-256color  |           |      | 256 lce
        xterm-256color  | truecolor |      | direct lce
        xterm           |           |      | 16 lce
        xterm-direct    |           |      | direct lce
        xterm-kitty     |           |      | direct sulce
        foot            | truecolor |      | direct sulce
        foot-extra      |           |      | direct sulce
        screen          |           |      | 16 ce
        screen-256color | truecolor |      | 256 ce
        screen-256color | truecolor | tmux | direct ulce
        tmux-256color   |           | tmux | 256 ulce
        tmux-256color   | 24bit     | tmux | direct ulce
        linux           | truecolor |      | 16 e
        vt100           |           |      | 16
        vt220           |           |      | 16 e
        dumb            | truecolor |      | 16 none
                        |           |      | 16 none
        something       | yes       |      | 16 e
    )");
    for (const auto& [term, colorTerm, tmux, expected] : rows)
        EXPECT_EQ(told(OuterTerminal::of(term, colorTerm, !tmux.empty())), expected) << term << " " << colorTerm;
}

}  // namespace

}  // namespace orvane
