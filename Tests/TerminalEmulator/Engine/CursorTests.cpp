#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using testing::TestTerminal;

TEST(CursorTest, movesWithinTheScreenTheRegionAndTheMargins) {
    // On a screen of 10 by 6; "M" stands for margins 3 to 7 and a region of rows 2 to 4, "O" for DECOM on top of it.
    struct Case {
        std::string_view frame;
        std::string_view input;
        std::string_view cursor;
    };
    const Case cases[] = {
        {"", "\x1b[3;4H", "3,2"},
        {"", "\x1b[99;99H", "9,5"},
        {"", "\x1b[;5f", "4,0"},
        {"", "\x1b[3;4H\x1b[A\x1b[2B\x1b[3C\x1b[D", "5,3"},
        {"", "\x1b[99A\x1b[0C", "1,0"},
        {"", "\x1b[4;4H\x1b[2F", "0,1"},
        {"", "\x1b[4;4H\x1b[2E", "0,5"},
        {"", "\x1b[4;4H\x1b[7G\x1b[2d", "6,1"},
        {"", "\x1b[4;4H\x1b[2a\x1b[e", "5,4"},
        {"", "\x1b[2147483647C\x1b[2147483647B", "9,5"},
        {"M", "\x1b[3;5H\x1b[9A", "4,1"},
        {"M", "\x1b[1;5H\x1b[9A", "4,0"},
        {"M", "\x1b[3;5H\x1b[9B", "4,3"},
        {"M", "\x1b[6;5H\x1b[9B", "4,5"},
        {"M", "\x1b[3;5H\x1b[9C", "6,2"},
        {"M", "\x1b[3;9H\x1b[9C", "9,2"},
        {"M", "\x1b[3;5H\x1b[9D", "2,2"},
        {"M", "\x1b[3;2H\x1b[9D", "0,2"},
        {"M", "\x1b[3;5H\r", "2,2"},
        {"M", "\x1b[3;2H\r", "0,2"},
        {"M", "\x1b[4;9H\n", "8,3"},
        {"M", "\x1b[2;9H\x1bM", "8,1"},
        {"M", "\x1b[3;5H\x1b[9I", "6,2"},
        {"M", "\x1b[3;9H\x1b[Z", "0,2"},
        {"O", "\x1b[H", "2,1"},
        {"O", "\x1b[99;99H", "6,3"},
        {"O", "\x1b[2;2H\x1b[9G", "6,2"},
        {"O", "\x1b[2;2H\x1b[9d", "3,3"},
        {"O", "\x1b[2;2H\x1b[6n", "3,2"},
        {"", "\t\t", "9,0"},
        {"", "\x1b[1;4H\x1bH\r\t", "3,0"},
        {"", "\x1b[3g\t", "9,0"},
        {"", "\x1b[3g\x1b[?5W\t", "8,0"},
        {"", "\x1b[1;9H\x1b[g\r\t", "9,0"},
        {"", "\x1b[1;9H\x1b[2Z", "0,0"},
        {"",
         "\x1b[3;4H\x1b"
         "7\x1b[H\x1b"
         "8",
         "3,2"},
        {"", "\x1b[3;4H\x1b[s\x1b[H\x1b[u", "3,2"},
        {"",
         "0123456789\x1b"
         "7\x1b[H\x1b"
         "8",
         "9,0+"},
        {"",
         "\x1b"
         "8",
         "0,0"},
        {"", "\x1b#6\x1b[9C", "4,0"},
        {"", "\x1b[4;2r\x1b[3;3H", "2,2"},
        {"", "\x1b[3;3H\x1b[2;4r", "0,0"},
    };
    for (const Case& each : cases) {
        TestTerminal screen(10, 6);
        if (!each.frame.empty()) screen.feed("\x1b[?69h\x1b[3;7s\x1b[2;4r");
        if (each.frame == "O") screen.feed("\x1b[?6h");
        screen.feed(each.input);
        EXPECT_EQ(screen.cursor(), each.cursor) << each.frame << " " << each.input.substr(1);
    }
}

TEST(CursorTest, wrapsBackOverRowsThatWereWrappedAndWithTheExtendedModeOverAll) {
    struct Case {
        std::string_view name;
        std::string_view input;
        std::string_view cursor;
    };
    const Case cases[] = {
        {"off", "0123456789ab\x1b[5D", "0,1"},
        {"over a wrapped row", "\x1b[?45h0123456789ab\x1b[5D", "7,0"},
        {"a pending wrap is one step", "\x1b[?45h0123456789\b\b", "8,0"},
        {"not over another row", "\x1b[?45habc\r\nd\x1b[5D", "0,1"},
        {"not without DECAWM", "\x1b[?45h0123456789ab\x1b[?7l\x1b[5D", "0,1"},
        {"extended", "\x1b[?1045habc\r\nd\x1b[5D", "6,0"},
        {"extended, from the top to the bottom", "\x1b[?1045h\b", "9,3"},
        {"between margins", "\x1b[?45h\x1b[?69h\x1b[3;5s\x1b[1;3Habcd\x1b[2D", "4,0"},
        {"round and round", "\x1b[?1045h\x1b[2147483647D", "0,0"},
    };
    for (const Case& each : cases) {
        TestTerminal screen;
        screen.feed(each.input);
        EXPECT_EQ(screen.cursor(), each.cursor) << each.name;
    }
}

TEST(CursorTest, savesWhatBelongsToTheCursorForEachScreen) {
    TestTerminal screen;
    screen.feed(
        "\x1b[1;31m\x1b(0\x1b[?6h\x1b[2;3H\x1b"
        "7");
    screen.feed(
        "\x1b[?1049h\x1b[4;4H\x1b"
        "7\x1b[0m\x1b(B\x1b[?1049l\x1b"
        "8q");
    EXPECT_EQ(screen.screen(), "|  ─|");
    const CharData cell = *screen.terminal.getCharData(2, 1);
    EXPECT_EQ(cell.attribute.fg, Attribute::Color::ansi256(1));
    EXPECT_EQ(cell.attribute.style, Attribute::CharacterStyle::bold);
    EXPECT_TRUE(screen.terminal.modes().originMode);
}

}  // namespace
}  // namespace orvane
