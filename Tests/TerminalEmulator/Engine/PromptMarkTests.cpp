#include <gmock/gmock.h>

#include "Support/Table.h"
#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::TestTerminal;

std::vector<int> promptRows(const Terminal& terminal) {
    std::vector<int> rows;
    for (int row = 0; row < terminal.buffer().count(); ++row) {
        if (terminal.buffer().row(row).startsPrompt) rows.push_back(row);
    }
    return rows;
}

TEST(PromptMarks, WhatAProgramSaysAndErasesDecidesWhichRowsHaveOne) {
    struct Case {
        std::string bytes;
        std::vector<int> rows;
    };
    const std::vector<Case> cases = {
        {"\x1b]133;A\x07$ ls\r\nout\r\n\x1b]133;A;aid=7;cl=m\x1b\\$ ", {0, 2}},
        {"\r\n\x1b]133;N;aid=1\x07$ ", {1}},
        {"\r\n\x1b]133;P;k=i\x07$ ", {1}},
        {"a\r\n\x1b]133;A;k=s\x07> \r\n\x1b]133;P;k=r\x07x\x1b]133;P;aid=2;k=c\x07", {}},
        {"\x1b]133;B\x07\x1b]133;C\x07\x1b]133;D;1\x07\x1b]133;D\x07", {}},
        {"\x1b]133\x07\x1b]133;\x07\x1b]133;AA\x07\x1b]133;Z\x07\x1b]133;a\x07", {}},
        // What shells do between the mark and the prompt.
        {"\x1b]133;A\x07\r\x1b[0m\x1b[J$ ", {0}},
        {"\x1b]133;A\x07$ \r\x1b[K$ ", {0}},
        // Erased whole, scrolled away in a region, shifted down, reset.
        {"\x1b]133;A\x07$ \x1b[2K", {}},
        {"\x1b]133;A\x07$ \r\n\x1b]133;A\x07$ \x1b[2J", {}},
        {"\x1b]133;A\x07$ \r\n\x1b]133;A\x07$ \x1b[1;1H\x1b[J", {0}},
        {"\r\n\x1b]133;A\x07$ \r\n\x1b[1J", {}},
        {"\r\n\x1b]133;A\x07$ \x1b[H\x1b[L", {2}},
        {"\r\n\x1b]133;A\x07$ \x1b[H\x1b[M", {0}},
        {"\x1b]133;A\x07$ \x1b[H\x1b[M", {}},
        {"\x1b]133;A\x07$ \x1b#8", {}},
        {"\x1b]133;A\x07$ \x1b"
         "c",
         {}},
    };
    for (const Case& each : cases) {
        TestTerminal terminal;
        terminal.feed(each.bytes);
        EXPECT_THAT(promptRows(terminal.terminal), ElementsAreArray(each.rows)) << ::testing::PrintToString(each.bytes);
    }
}

TEST(PromptMarks, GoIntoTheHistoryAndThroughChangesOfWidthWithTheirLine) {
    TestTerminal terminal(10, 3);
    terminal.feed("zero\r\n\x1b]133;A\x07$ 23456789abcdefghijkl\r\nout\r\n");  // the prompt's line takes three rows
    terminal.feed("\x1b]133;A\x07$ second\r\n1\r\n2\r\n3");
    ASSERT_THAT(promptRows(terminal.terminal), ElementsAre(1, 5));
    ASSERT_EQ(terminal.terminal.buffer().yBase(), 6);
    terminal.terminal.resize(40, 3);
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(1, 3));
    terminal.terminal.resize(5, 3);
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(1, 7));
    // Rows come out of the history and go back.
    terminal.terminal.resize(10, 9);
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(1, 5));
    terminal.terminal.resize(10, 2);
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(1, 5));
    // On the screen alone, too, and when its line was cut in two by the edge of the history.
    terminal.terminal.resize(7, 8);
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(1, 6));
}

TEST(PromptMarks, RowsThatComeInAnewHaveNone) {
    TestTerminal terminal(10, 3, 4);
    for (int i = 0; i < 20; ++i)
        terminal.feed("\x1b]133;A\x07$ x\r\nout\r\n");
    EXPECT_THAT(promptRows(terminal.terminal), ElementsAre(0, 2, 4)) << terminal.all();
    TestTerminal without(10, 3, 0);
    without.feed("\x1b]133;A\x07$ x\r\n1\r\n2\r\n3\r\n4");
    EXPECT_THAT(promptRows(without.terminal), ElementsAre());
}

TEST(HeldView, StaysOnWhatItShowsUntilItFollowsAgain) {
    TestTerminal terminal(10, 3, 6);
    terminal.feed("1\r\n2\r\n3\r\n4\r\n5");
    const auto top = [&] {
        return terminal.terminal.getLine(0).translateToString(terminal.terminal.clusters(), {.trimsRight = true});
    };
    terminal.terminal.holdView();
    terminal.feed("\r\n6\r\n7");
    EXPECT_EQ(top(), "3");
    // Rows fall off the history: the view goes with its rows and stops at the oldest.
    terminal.feed("\r\n8\r\n9\r\n10\r\n11\r\n");
    EXPECT_EQ(top(), "4") << "its first row has fallen off";
    EXPECT_EQ(terminal.terminal.getTopVisibleRow(), 0);
    terminal.terminal.followNewest();
    EXPECT_EQ(top(), "10");
    terminal.feed("12\r\n13");
    EXPECT_EQ(top(), "11") << "it follows";
    terminal.terminal.holdView();
    terminal.terminal.resize(10, 2);
    EXPECT_EQ(terminal.terminal.getTopVisibleRow(), terminal.terminal.buffer().yBase());
}

}  // namespace
}  // namespace orvane
