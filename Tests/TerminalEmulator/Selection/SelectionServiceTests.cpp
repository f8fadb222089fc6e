#include "TerminalEmulator/SelectionService.h"

#include <gtest/gtest.h>

#include "TerminalEmulator/Buffer/BufferNotation.h"

namespace orvane::testing {
namespace {

struct Screen {
    explicit Screen(std::u32string_view text, int cols = 10, int rows = 4, std::optional<int> scrollback = 3)
        : buffer(cols, rows, 8, scrollback) {
        buffer.fillViewportRows();
        type(buffer, text);
    }

    ClusterTable clusters;
    Buffer buffer;
    SelectionService selection{buffer, clusters};

    void drag(Position from, Position to, SelectionMode mode) {
        selection.startSelection(from, mode);
        selection.extend(to);
    }

    /// Rows with "#" for selected cells, as far as the text goes or anything is selected.
    std::vector<std::string> picture() const {
        std::vector<std::string> rows;
        for (int row = 0; row < buffer.count(); ++row) {
            std::string& line = rows.emplace_back();
            for (int col = 0; col < buffer.cols(); ++col)
                line += selection.isSelected({row, col}) ? '#' : '.';
        }
        return rows;
    }
};

TEST(SelectionServiceTests, SelectsWhatTheModeMakesOfTwoCells) {
    using enum SelectionMode;
    struct Case {
        SelectionMode mode;
        std::u32string_view typed;
        Position from;
        Position to;
        std::string_view text;
        SelectionRange range;
    };
    const std::vector<Case> cases = {
        {character, U"hello", {0, 1}, {0, 3}, "ell", {{0, 1}, {0, 4}}},
        {character, U"hello", {0, 3}, {0, 1}, "ell", {{0, 1}, {0, 4}}},
        {character, U"hello", {0, 3}, {0, 3}, "l", {{0, 3}, {0, 4}}},
        {character, U"ab  \n\ncd", {0, 1}, {2, 0}, "b\n\nc", {{0, 1}, {2, 1}}},
        {character, U"a b c", {0, 0}, {0, 3}, "a b ", {{0, 0}, {0, 4}}},
        {character, U"0123456789abc", {0, 8}, {1, 1}, "89ab", {{0, 8}, {1, 2}}},
        {character, U"012345678一二", {0, 8}, {1, 3}, "8一二", {{0, 8}, {1, 4}}},
        {character, U"a一二b", {0, 2}, {0, 3}, "一二", {{0, 1}, {0, 5}}},
        {character, U"a", {-5, 99}, {99, -5}, "\n\n\n", {{0, 9}, {3, 1}}},
        {word, U"cd ~/a-b/c_d.h:3 (x)", {0, 5}, {0, 5}, "~/a-b/c_d.h:3", {{0, 3}, {1, 6}}},
        {word, U"cd ~/a-b/c_d.h:3 (x)", {1, 2}, {0, 0}, "cd ~/a-b/c_d.h:3", {{0, 0}, {1, 6}}},
        {word, U"one two six", {0, 5}, {0, 9}, "two six", {{0, 4}, {1, 1}}},
        {word, U"one two six", {0, 5}, {0, 1}, "one two", {{0, 0}, {0, 7}}},
        {word, U"\"abc\" (x)", {0, 0}, {0, 0}, "\"", {{0, 0}, {0, 1}}},
        {word, U"ab   cd", {0, 3}, {0, 3}, "   ", {{0, 2}, {0, 5}}},
        {word, U"「日本」", {0, 3}, {0, 3}, "日本", {{0, 2}, {0, 6}}},
        {row, U"x\n0123456789abc\ny", {2, 1}, {2, 1}, "0123456789abc", {{1, 0}, {2, 10}}},
        {row, U"x\n0123456789abc\ny", {2, 1}, {0, 0}, "x\n0123456789abc", {{0, 0}, {2, 10}}},
        {row, U"x\n0123456789abc\ny", {0, 0}, {1, 1}, "x\n0123456789abc", {{0, 0}, {2, 10}}},
        {block, U"abcd\ne\nfg一h", {0, 2}, {2, 1}, "bc\n\ng一", {{0, 1}, {2, 3}}},
    };
    for (const Case& test : cases) {
        Screen screen(test.typed);
        screen.drag(test.from, test.to, test.mode);
        EXPECT_EQ(screen.selection.selectedText(), test.text);
        EXPECT_EQ(screen.selection.start(), test.range.start) << test.text;
        EXPECT_EQ(screen.selection.end(), test.range.end) << test.text;
    }
}

TEST(SelectionServiceTests, DraggingKeepsTheWordWhereItBegan) {
    Screen screen(U"aa bb cc dd", 20);
    screen.selection.startSelection({0, 4}, SelectionMode::word);
    const SelectionRange bb{{0, 3}, {0, 5}};
    EXPECT_EQ(screen.selection.range(), bb);
    for (const auto& [col, text] : std::vector<std::pair<int, std::string>>{
             {7, "bb cc"}, {10, "bb cc dd"}, {4, "bb"}, {0, "aa bb"}, {5, "bb "}}) {
        screen.selection.extend({0, col});
        EXPECT_EQ(screen.selection.selectedText(), text);
        EXPECT_EQ(screen.selection.wordSelectionAnchor(), bb);
        EXPECT_EQ(screen.selection.pivot(), (Position{0, 4}));
    }
}

TEST(SelectionServiceTests, CellsOfWideCharactersAreSelectedTogether) {
    using Rows = std::vector<std::string>;
    Screen screen(U"a一二b\n一二", 6, 2);
    screen.drag({0, 2}, {1, 0}, SelectionMode::character);
    EXPECT_EQ(screen.picture(), (Rows{".#####", "##...."}));
    screen.drag({0, 2}, {1, 2}, SelectionMode::block);
    EXPECT_EQ(screen.picture(), (Rows{".####.", "####.."}));
    screen.selection.startSelection({0, 2}, SelectionMode::character);
    EXPECT_EQ(screen.picture(), (Rows{"......", "......"}));
    EXPECT_EQ(screen.selection.pivot(), (Position{0, 1}));
    // A wide character that comes to stand across an edge later.
    screen.drag({0, 3}, {0, 3}, SelectionMode::character);
    screen.buffer.line(0).writeCell(2, U'三', 2, {});
    EXPECT_EQ(screen.picture(), (Rows{"..###.", "......"}));
}

TEST(SelectionServiceTests, ScrollingMovesTheSelectionUntilItFallsOff) {
    Screen screen(U"one\ntwo\nsix", 10, 2, 3);
    int changes = 0;
    screen.selection.onChange = [&] { ++changes; };
    screen.drag({0, 1}, {1, 1}, SelectionMode::character);
    EXPECT_EQ(changes, 1);
    const auto scroll = [&](std::u32string_view rows) {
        type(screen.buffer, rows);
        screen.selection.bufferChanged();
    };
    scroll(U"\n1\n2");  // into the history, of which nothing falls off
    EXPECT_EQ(screen.selection.range(), (SelectionRange{{0, 1}, {1, 2}}));
    EXPECT_EQ(changes, 1);
    scroll(U"\n3");
    EXPECT_EQ(screen.selection.range(), (SelectionRange{{0, 0}, {0, 2}}));
    EXPECT_EQ(screen.selection.selectedText(), "tw");
    EXPECT_EQ(screen.selection.pivot(), Position{});
    EXPECT_EQ(changes, 2);
    type(screen.buffer, U"\n4");
    EXPECT_FALSE(screen.selection.hasSelection());  // also before it is told
    screen.selection.bufferChanged();
    EXPECT_EQ(changes, 3);
}

TEST(SelectionServiceTests, MovesWithRowsOfAScrollRegion) {
    struct Case {
        int by;
        SelectionRange range;
    };
    const std::vector<Case> cases = {
        {1, {{1, 3}, {2, 5}}},  {2, {{1, 0}, {1, 5}}},   {3, {}},  {99, {}},
        {-2, {{4, 3}, {5, 5}}}, {-3, {{5, 3}, {5, 10}}}, {-4, {}},
    };
    for (const Case& test : cases) {
        Screen screen(U"", 10, 8);
        screen.drag({2, 3}, {3, 4}, SelectionMode::character);
        screen.selection.rowsMoved(1, 5, test.by);
        EXPECT_EQ(screen.selection.range(), test.range) << test.by;
    }
    Screen screen(U"", 10, 8);
    screen.drag({2, 3}, {3, 4}, SelectionMode::character);
    screen.selection.rowsMoved(4, 7, 1);
    screen.selection.rowsMoved(0, 1, 1);
    EXPECT_EQ(screen.selection.range(), (SelectionRange{{2, 3}, {3, 5}}));
    screen.selection.rowsMoved(3, 7, 1);
    EXPECT_FALSE(screen.selection.hasSelection());
}

TEST(SelectionServiceTests, EndsWithTheSizeAndTheBuffer) {
    const std::vector<std::function<void(Screen&)>> ends = {
        [](Screen& screen) { screen.buffer.resize(11, 4); },
        [](Screen& screen) { screen.buffer.resize(10, 3); },
        [](Screen& screen) { screen.buffer.clear(); },
        [](Screen& screen) { screen.selection.clear(); },
    };
    for (std::size_t index = 0; index < ends.size(); ++index) {
        Screen screen(U"1\n2\n3\n4\n5");
        screen.selection.selectAll();
        EXPECT_EQ(screen.selection.selectedText(), "1\n2\n3\n4\n5");
        ends[index](screen);
        EXPECT_FALSE(screen.selection.hasSelection()) << index;
        EXPECT_EQ(screen.selection.selectedText(), "") << index;
        EXPECT_FALSE(screen.selection.isSelected({0, 0})) << index;
    }
    Screen screen(U"one");
    const Screen other(U"two");
    screen.selection.selectAll();
    screen.selection.setBuffer(other.buffer);
    EXPECT_FALSE(screen.selection.hasSelection());
    screen.selection.selectAll();
    EXPECT_EQ(screen.selection.selectedText(), "two");

    Buffer empty(10, 4, 8, 3);  // without rows
    screen.selection.setBuffer(empty);
    screen.selection.startSelection({0, 0}, SelectionMode::row);
    screen.selection.selectAll();
    EXPECT_FALSE(screen.selection.hasSelection());
}

}  // namespace
}  // namespace orvane::testing
