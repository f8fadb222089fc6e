#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using testing::TestTerminal;

/// On a screen of 10 by 4.
struct Case {
    std::string_view name;
    std::string_view input;
    std::string_view screen;
    std::string_view cursor;
};

void check(std::span<const Case> cases) {
    for (const Case& each : cases) {
        TestTerminal screen;
        screen.feed(each.input);
        EXPECT_EQ(screen.screen(), each.screen) << each.name;
        EXPECT_EQ(screen.cursor(), each.cursor) << each.name;
    }
}

TEST(TextTest, wrapsAtTheRightMarginWhenTheNextCharacterComes) {
    const Case cases[] = {
        {"the last column leaves the wrap pending", "0123456789", "0123456789|", "9,0+"},
        {"one more wraps", "0123456789a", "0123456789|a|", "1,1"},
        {"a carriage return ends it", "0123456789\ra", "a123456789|", "1,0"},
        {"a line feed ends it", "0123456789\nab", "0123456789|         a|b|", "1,2"},
        {"backspace stands before the last column", "0123456789\ba", "01234567a9|", "9,0"},
        {"without DECAWM the last column is overwritten", "\x1b[?7l0123456789abc", "012345678c|", "9,0+"},
        {"the same one after the other", "\x1b[?7l012345678éèê", "012345678ê|", "9,0+"},
        {"a wide character that does not fit wraps whole", "012345678漢", "012345678|漢|", "2,1"},
        {"without DECAWM it takes the last two columns", "\x1b[?7l012345678漢", "01234567漢|", "9,0+"},
        {"between margins", "\x1b[?69h\x1b[3;5s\x1b[1;3Habcdef", "  abc|  def|", "4,1+"},
        {"right of the margins to the screen's edge", "\x1b[?69h\x1b[3;5s\x1b[1;8Habcd", "       abc|  d|", "3,1"},
        {"at the bottom it scrolls", "\x1b[4;9Habc", "||        ab|c|", "1,3"},
        {"below the region it does not", "\x1b[1;2r\x1b[4;9Habc", "|||c       ab|", "1,3"},
        {"onto a row drawn double, from beyond its end", "\x1b#6\x1b[2;10H\x1bMab", "    a|b|", "1,1"},
        {"the same with other characters", "\x1b#6\x1b[2;10H\x1bMéè", "    é|è|", "1,1"},
        {"insert mode shifts to the margin", "abcdefgh\x1b[4h\x1b[1;3HXYZ", "abXYZcdefg|", "5,0"},
        {"insert mode, wide", "abcdefgh\x1b[4h\r漢é", "漢éabcdefg|", "3,0"},
    };
    check(cases);
}

TEST(TextTest, joinsScalarsToTheClusterBeforeTheCursor) {
    const Case cases[] = {
        {"a combining mark", "e\u0301x", "e\u0301x|", "2,0"},
        {"a mark on the last column", "012345678e\u0301x", "012345678e\u0301|x|", "1,1"},
        {"a mark after a wide character", "漢\u0301x", "漢\u0301x|", "3,0"},
        {"a mark with nothing before it takes no column", "\u0301x", "x|", "1,0"},
        {"a family is one cell of two columns", "👩\u200D👩\u200D👧x", "👩\u200D👩\u200D👧x|", "3,0"},
        {"a skin tone", "👍🏽x", "👍🏽x|", "3,0"},
        {"two indicators are a flag, the third begins another", "🇩🇪🇫x", "🇩🇪🇫x|", "5,0"},
        {"selector 16 widens a character that is text by default", "❤\uFE0Fx", "❤\uFE0Fx|", "3,0"},
        {"but no other", "a\uFE0Fx", "a\uFE0Fx|", "2,0"},
        {"nor where there is no room", "012345678❤\uFE0Fx", "012345678❤\uFE0F|x|", "1,1"},
        {"selector 15 narrows an emoji", "⌚\uFE0Ex", "⌚\uFE0Ex|", "2,0"},
        {"a keycap", "1\uFE0F\u20E3x", "1\uFE0F\u20E3x|", "3,0"},
        {"the vowel of decomposed Hangul", "\u1112\u1161\u11ABx", "\u1112\u1161\u11ABx|", "3,0"},
        {"what overwrites half of a wide character empties the rest", "漢字\x1b[1;2Hx", " x字|", "2,0"},
        {"the cursor moved: the mark goes to the cell before it", "ab\x1b[1;2H\u0301x", "a\u0301x|", "2,0"},
    };
    check(cases);
}

TEST(TextTest, decodesUtf8AndLeavesControlsOut) {
    const Case cases[] = {
        {"malformed bytes give the replacement character", "a\xC3(\xFF", "a\uFFFD(\uFFFD|", "4,0"},
        {"a character cut by an escape", "a\xE6\xBC\x1b[mb", "a\uFFFDb|", "3,0"},
        {"a character cut by a control", "a\xE6\xBC\rb", "b\uFFFD|", "1,0"},
        {"neither DEL nor C1 prints",
         "a\x7F"
         "b\u0085c\u009B1md",
         "abc1md|", "6,0"},
        {"DEC graphics and back", "\x1b(0lqk\x1b(Bx", "┌─┐x|", "4,0"},
        {"shifted out and in", "\x1b)0a\x0Eq\x0Fq", "a─q|", "3,0"},
        {"a single shift holds for one character", "\x1b*0\x1bNqq", "─q|", "2,0"},
        {"locking shifts", "\x1b*0\x1bnq\x0Fq", "─q|", "2,0"},
        {"REP", "ab\x1b[3bc", "abbbbc|", "6,0"},
        {"REP wraps", "漢\x1b[5bx", "漢漢漢漢漢|漢x|", "3,1"},
        {"REP after nothing", "\x1b[3bc", "c|", "1,0"},
    };
    check(cases);
    TestTerminal pieces;
    pieces.feed("漢").feed("\xE5").feed("\xAD").feed("\x97x");
    EXPECT_EQ(pieces.screen(), "漢字x|");
}

TEST(TextTest, aFloodOfRepetitionsOrMarksStaysBounded) {
    TestTerminal screen;
    screen.feed("x\x1b[2147483647b");
    EXPECT_EQ(screen.screen(), "xxxxxxxxxx|xxxxxxxxxx|xxxxxxxxxx|x|");
    screen.feed("\x1b[2J\x1b[He");
    for (int count = 0; count < 1000; ++count)
        screen.feed("\u0301");
    std::string expected = "e";
    for (int count = 1; count < 32; ++count)
        expected += "\u0301";
    EXPECT_EQ(screen.screen(), expected + "|");
}

TEST(TextTest, regionalIndicatorsCanBeNarrow) {
    RecordingDelegate delegate;
    Terminal terminal(delegate, {.regionalIndicatorWidth = RegionalIndicatorWidth::narrow});
    terminal.feed("🇩🇪x");
    EXPECT_EQ(terminal.getCursorLocation().x, 2);
}

}  // namespace
}  // namespace orvane
