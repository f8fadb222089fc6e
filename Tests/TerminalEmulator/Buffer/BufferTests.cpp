#include "TerminalEmulator/Buffer/Buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "BufferNotation.h"

namespace orvane::testing {
namespace {

using ::testing::ElementsAre;

struct Typed {
    Typed(int cols, int rows, std::optional<int> scrollback, std::u32string_view text)
        : buffer(cols, rows, 8, scrollback) {
        buffer.fillViewportRows();
        type(buffer, text);
    }
    Buffer buffer;
};

TEST(BufferTests, WithoutHistoryLinesAScrollDropsTheTopRowAtOnce) {
    Typed typed(10, 2, 0, U"one\ntwo\nthree");
    EXPECT_EQ(typed.buffer.count(), 2);
    EXPECT_EQ(typed.buffer.linesTop(), 1U);
    EXPECT_THAT(ringRows(typed.buffer), ElementsAre("two", "three"));
}

TEST(BufferTests, TheHistoryIsBoundedInRowsAndAScrolledBackViewStaysOnItsText) {
    Typed typed(10, 2, 3, U"1\n2\n3\n4\n5");
    Buffer& buffer = typed.buffer;
    EXPECT_THAT(ringRows(buffer), ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_EQ(buffer.yDisp(), 3) << "a view at the end follows";
    buffer.setYDisp(1);
    type(buffer, U"\n6");
    EXPECT_EQ(buffer.yDisp(), 0) << "its row moved up by one";
    EXPECT_THAT(ringRows(buffer), ElementsAre("2", "3", "4", "5", "6"));
    EXPECT_EQ(buffer.getChar(0, 0).code, '2');
    EXPECT_EQ(buffer.getCharBufferRelative(0, 4).code, '6');
    buffer.changeHistorySize(1);
    EXPECT_THAT(ringRows(buffer), ElementsAre("4", "5", "6"));
    buffer.changeHistorySize(std::nullopt);
    EXPECT_FALSE(buffer.hasScrollback());
    EXPECT_THAT(ringRows(buffer), ElementsAre("5", "6"));
}

TEST(BufferTests, RowsLeaveTheTopOfARegionForTheHistoryOnlyFromTheTopOfTheScreen) {
    Typed typed(10, 4, 9, U"1\n2\n3\n4");
    Buffer& buffer = typed.buffer;
    buffer.scrollUp(0, 1, {});
    EXPECT_THAT(ringRows(buffer), ElementsAre("1", "2", "", "3", "4"));
    buffer.scrollUp(1, 3, {});
    EXPECT_THAT(ringRows(buffer), ElementsAre("1", "2", "3", "4"));
    buffer.deleteRow(0, 3, {});
    EXPECT_THAT(ringRows(buffer), ElementsAre("1", "3", "4"));
    buffer.insertRow(0, 1, {});
    EXPECT_THAT(ringRows(buffer), ElementsAre("1", "", "3"));
}

TEST(BufferTests, AHistoryFullInBytesLosesItsOldestRows) {
    Typed typed(80, 5, 1'000'000, U"");
    Buffer& buffer = typed.buffer;
    buffer.limitHistoryBytes(100'000);
    for (int line = 0; line < 20'000; ++line) {
        const std::string text = "line " + std::to_string(line);
        type(buffer, std::u32string(text.begin(), text.end()) + U'\n');
    }
    EXPECT_LT(buffer.bytesInUse(), 200'000U);
    const std::vector<std::string> rows = ringRows(buffer);
    EXPECT_GT(rows.size(), 3'000U);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        ASSERT_EQ(rows[index], "line " + std::to_string(20'000 - rows.size() + index));
    }
}

TEST(BufferTests, HistoryLinesCostWhatTheyHold) {
    for (const auto& [length, most] : {std::pair{2, 80U}, std::pair{96, 300U}}) {
        Typed typed(200, 50, 100'000, U"");
        const std::size_t before = typed.buffer.bytesInUse();
        const std::u32string line(static_cast<std::size_t>(length), U'x');
        for (int count = 0; count < 20'000; ++count)
            type(typed.buffer, line + U'\n');
        EXPECT_LT((typed.buffer.bytesInUse() - before) / 20'000, most) << length << " characters";
    }
}

TEST(BufferTests, HeightChangesKeepTheCursorInItsRow) {
    Typed last(10, 4, 9, U"1\n2\n3\n4");
    last.buffer.resize(10, 2);
    EXPECT_THAT(screenRows(last.buffer), ElementsAre("3", "4"));
    EXPECT_EQ(last.buffer.yBase(), 2) << "the top rows went into the history";
    EXPECT_EQ(last.buffer.y(), 1);
    last.buffer.resize(10, 3);
    EXPECT_THAT(screenRows(last.buffer), ElementsAre("2", "3", "4"));
    EXPECT_EQ(last.buffer.y(), 2);
    last.buffer.resize(10, 6);
    EXPECT_THAT(screenRows(last.buffer), ElementsAre("1", "2", "3", "4"));
    EXPECT_EQ(last.buffer.y(), 3);

    Typed above(10, 4, 9, U"1\n2\n3\n4");
    above.buffer.setY(1);
    above.buffer.resize(10, 3);
    EXPECT_THAT(ringRows(above.buffer), ElementsAre("1", "2", "3")) << "rows below the cursor go first";
    above.buffer.resize(10, 1);
    EXPECT_THAT(ringRows(above.buffer), ElementsAre("1", "2"));
    EXPECT_EQ(above.buffer.yBase(), 1);
    EXPECT_EQ(above.buffer.y(), 0);
}

TEST(BufferTests, WidthChangesBreakLinesAnewAndJoinThemAgain) {
    struct Case {
        std::u32string_view text;
        int cols;
        std::vector<std::string> rows;
        int x, y;
    };
    const Case cases[] = {
        {U"abcdefgh", 4, {"abcd", "+efgh", "+"}, 0, 2},
        {U"abcdefg", 4, {"abcd", "+efg"}, 3, 1},
        {U"abc\ndefghij", 3, {"abc", "def", "+ghi", "+j"}, 1, 3},
        {U"abc一d", 4, {"abc", "+一d"}, 3, 1},
        {U"一二三", 5, {"一二", "+三"}, 2, 1},
        {U"一二三", 3, {"一", "+二", "+三"}, 2, 2},
        {U"ab  \n\ncd", 2, {"ab", "+  ", "", "cd", "+"}, 0, 4},
    };
    for (const Case& each : cases) {
        Typed typed(10, 6, 20, each.text);
        Buffer& buffer = typed.buffer;
        const std::vector<std::string> before = ringRows(buffer);
        const std::pair cursor{buffer.x(), buffer.y()};
        buffer.resize(each.cols, 6);
        EXPECT_EQ(ringRows(buffer), each.rows);
        EXPECT_EQ(std::pair(buffer.x(), buffer.y()), std::pair(each.x, each.y)) << each.rows[0] << " at " << each.cols;
        EXPECT_EQ(buffer.yBase(), 0) << "blank rows below the cursor give way first";
        buffer.resize(10, 6);
        EXPECT_EQ(ringRows(buffer), before);
        EXPECT_EQ(std::pair(buffer.x(), buffer.y()), cursor);
    }
}

TEST(BufferTests, APendingWrapGoesOnWhereItStays) {
    Typed typed(4, 3, 9, U"abcd");
    Buffer& buffer = typed.buffer;
    ASSERT_TRUE(buffer.isWrapPending);
    buffer.resize(2, 3);
    EXPECT_TRUE(buffer.isWrapPending) << "still behind the last column";
    EXPECT_EQ(std::pair(buffer.x(), buffer.y()), std::pair(1, 1));
    buffer.resize(8, 3);
    EXPECT_FALSE(buffer.isWrapPending);
    EXPECT_EQ(std::pair(buffer.x(), buffer.y()), std::pair(4, 0));
    type(buffer, U"ef");
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcdef"));
}

TEST(BufferTests, ALineBetweenHistoryAndScreenIsBrokenAsOne) {
    Typed typed(6, 2, 20, U"abcdefghijklmnopqrstuvwxyz");
    Buffer& buffer = typed.buffer;
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcdef", "+ghijkl", "+mnopqr", "+stuvwx", "+yz"));
    buffer.resize(9, 2);
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcdefghi", "+jklmnopqr", "+stuvwxyz"));
    buffer.resize(30, 2);
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcdefghijklmnopqrstuvwxyz"));
    EXPECT_EQ(buffer.yBase(), 0);
    buffer.resize(6, 2);
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcdef", "+ghijkl", "+mnopqr", "+stuvwx", "+yz"));
}

TEST(BufferTests, TheAlternateScreenIsCut) {
    Typed typed(6, 2, std::nullopt, U"abcdef\nabc一x");
    Buffer& buffer = typed.buffer;
    buffer.resize(4, 2);
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcd", "abc"));
    EXPECT_EQ(splitCharacter(buffer), "");
    buffer.resize(6, 3);
    EXPECT_THAT(ringRows(buffer), ElementsAre("abcd", "abc"));
    type(buffer, U"\n\n\n");
    EXPECT_EQ(buffer.yBase(), 0);
}

TEST(BufferTests, ResizingClampsMarginsRegionAndSizes) {
    Typed typed(20, 10, 0, U"");
    Buffer& buffer = typed.buffer;
    buffer.setMarginLeft(15);
    buffer.setScrollTop(3);
    buffer.setScrollBottom(5);
    buffer.resize(10, 8);
    EXPECT_EQ(std::pair(buffer.marginLeft(), buffer.marginRight()), std::pair(9, 9));
    EXPECT_EQ(std::pair(buffer.scrollTop(), buffer.scrollBottom()), std::pair(0, 7));
    buffer.resize(-1, 0);
    EXPECT_EQ(std::pair(buffer.cols(), buffer.rows()), std::pair(Buffer::minimumCols, Buffer::minimumRows));
    buffer.clear();
    buffer.resize(10, 4);
    buffer.fillViewportRows();
    EXPECT_EQ(buffer.count(), 4);
    EXPECT_EQ(buffer.scrollBottom(), 3);
}

TEST(BufferTests, TheViewPortTestLeavesTheCursorOut) {
    Typed typed(5, 4, 50, U"1\n2\n3\n4\n5\n6\n");
    EXPECT_FALSE(typed.buffer.isCursorInViewPort()) << "3 + 2 * 3";
    typed.buffer.setYDisp(0);
    EXPECT_TRUE(typed.buffer.isCursorInViewPort());
}

TEST(BufferTests, GenerationsTellWhetherARowHasChanged) {
    Typed typed(5, 2, 9, U"1\n2\n3\n4\n5");
    Buffer& buffer = typed.buffer;
    const std::uint64_t history = buffer.row(0).generation;
    const std::uint64_t screen = buffer.row(buffer.yBase()).generation;
    type(buffer, U"\n6");
    EXPECT_EQ(buffer.row(0).generation, history);
    buffer.resize(5, 6);
    EXPECT_NE(buffer.row(0).generation, history);
    std::set<std::uint64_t> all{screen};
    for (int index = 0; index < buffer.count(); ++index)
        EXPECT_TRUE(all.insert(buffer.row(index).generation).second);
}

TEST(BufferTests, LinksOfTheHistoryAreMarked) {
    Typed typed(5, 2, 9, U"");
    Buffer& buffer = typed.buffer;
    type(buffer, U"a", Pen({}, {77}));
    type(buffer, U"\n\n\n");
    ASSERT_EQ(buffer.row(0).charData(0).payload, TinyAtom{77});
    PayloadSet set;
    buffer.markPayloads(set);
    EXPECT_TRUE(set.contains(77));
    EXPECT_FALSE(set.contains(76));
}

TEST(TabStopTests, StopsAreSetFromAColumnOn) {
    const auto stops = [](const TabStops& tabs, int cols) {
        std::string out;
        for (int col = 0; col < cols; ++col)
            out += tabs.isSet(col) ? 'T' : '.';
        return out;
    };
    TabStops tabs(12, 4);
    EXPECT_EQ(stops(tabs, 12), "T...T...T...");
    tabs.resize(20);
    EXPECT_EQ(stops(tabs, 20), "T...T...T...........");
    tabs.setup(12, 3);
    EXPECT_EQ(stops(tabs, 20), "T...T...T..T..T..T..");
    tabs.setup(4, 0);
    EXPECT_EQ(stops(tabs, 20), "T...T...............");
    EXPECT_EQ(tabs.next(0), 4);
    EXPECT_EQ(tabs.next(4), 19);
    EXPECT_EQ(tabs.previous(9), 4);
    EXPECT_EQ(tabs.previous(0), 0);
    EXPECT_EQ(tabs.next(99), 19);
}

}  // namespace
}  // namespace orvane::testing
