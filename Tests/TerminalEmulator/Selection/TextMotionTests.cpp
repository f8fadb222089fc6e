#include "TerminalEmulator/Selection/TextMotion.h"

#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using testing::TestTerminal;
using Words = TextMotion::Words;
using Motion = Position (TextMotion::*)(Position) const;

std::string shown(Position at) {
    return std::to_string(at.row) + "," + std::to_string(at.col);
}

/// Where a motion leads, step by step, until it leads nowhere.
template <typename Step>
std::string path(Position at, const Step& step) {
    std::string places;
    for (Position next = step(at); next != at && places.size() < 200; next = step(at)) {
        at = next;
        places += shown(at) + " ";
    }
    return places;
}

TEST(TextMotionTest, WordsGoOverWrappedRowsAndBlanksAndEndWithTheText) {
    TestTerminal terminal(8, 6);
    terminal.feed("if (ab_1)\r\n\r\n  \xE6\x96\x87\xE5\xAD\x97 x/y");  // "if (ab_1" goes on with ")" in the next row
    const TextMotion text(terminal.terminal.buffer(), terminal.terminal.clusters());
    const auto forward = [&](Words words) {
        return path({}, [&](Position at) { return text.wordForward(at, words); });
    };
    const auto ends = [&](Words words) { return path({}, [&](Position at) { return text.wordEnd(at, words); }); };
    const auto back = [&](Words words) {
        return path({.row = 5, .col = 0}, [&](Position at) { return text.wordBack(at, words); });
    };
    EXPECT_EQ(forward(Words::plain), "0,3 0,4 1,0 3,2 3,7 4,0 4,1 ") << terminal.screen();
    EXPECT_EQ(forward(Words::betweenBlanks), "0,3 3,2 3,7 4,1 ") << "the last word has only an end to go to";
    EXPECT_EQ(ends(Words::plain), "0,1 0,3 0,7 1,0 3,4 3,7 4,0 4,1 ");
    EXPECT_EQ(ends(Words::betweenBlanks), "0,1 1,0 3,4 4,1 ");
    EXPECT_EQ(back(Words::plain), "4,1 4,0 3,7 3,2 1,0 0,4 0,3 0,0 ");
    EXPECT_EQ(back(Words::betweenBlanks), "3,7 3,2 0,3 0,0 ");
    EXPECT_EQ(shown(text.left({3, 4})), "3,2") << "a wide character is one step";
    EXPECT_EQ(shown(text.right({3, 2})), "3,4");
    EXPECT_EQ(shown(text.left({})), "0,0");
    EXPECT_EQ(text.nameAt({0, 5}), "ab_1");
    EXPECT_EQ(text.nameAt({0, 2}), "ab_1") << "the next one of the line";
    EXPECT_EQ(text.nameAt({1, 0}), "") << "not one of another line";
    EXPECT_EQ(text.nameAt({2, 0}), "");
}

TEST(TextMotionTest, LinesAndParagraphs) {
    TestTerminal terminal(8, 8);
    terminal.feed("a\r\n   bcdefghij\r\nk\r\n\r\n  \r\nlast");  // the second line takes two rows
    const TextMotion text(terminal.terminal.buffer(), terminal.terminal.clusters());
    EXPECT_EQ(shown(text.lineStart({2, 1})), "1,0");
    EXPECT_EQ(shown(text.lineText({2, 1})), "1,3");
    EXPECT_EQ(shown(text.lineEnd({1, 1})), "2,3");
    EXPECT_EQ(shown(text.lineText({5, 1})), "5,0") << "blank";
    EXPECT_EQ(shown(text.lineEnd({4, 5})), "4,0") << "empty";
    EXPECT_EQ(path({}, [&](Position at) { return text.paragraphDown(at); }), "4,0 6,0 ");
    EXPECT_EQ(path({6, 2}, [&](Position at) { return text.paragraphUp(at); }), "0,0 ");
    EXPECT_EQ(path({7, 0}, [&](Position at) { return text.paragraphUp(at); }), "5,0 0,0 ");
    EXPECT_EQ(text.lastTextRow(), 6);
}

}  // namespace
}  // namespace orvane
