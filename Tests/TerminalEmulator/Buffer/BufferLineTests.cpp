#include "TerminalEmulator/Buffer/BufferLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "TerminalEmulator/Buffer/ScreenRows.h"

namespace orvane::testing {
namespace {

using Color = Attribute::Color;

/// One row: `|` and `'` stand for the halves of a wide character, `.` for an empty cell.
class Row {
 public:
    explicit Row(std::string_view text) : rows_(static_cast<int>(text.size()), 1, generations_) {
        for (int col = 0; col < rows_.cols(); ++col) {
            const char character = text[static_cast<std::size_t>(col)];
            if (character == '|') line().writeCell(col, 0x4E00, 2, {});
            if (character != '|' && character != '\'' && character != '.') line().writeCell(col, character, 1, {});
        }
    }

    BufferLine line() { return rows_.line(0); }
    std::string text() {
        std::string out;
        for (int col = 0; col < rows_.cols(); ++col) {
            const StoredCell cell = line().at(col);
            out += cell.isWide()        ? '|'
                   : cell.isRightHalf() ? '\''
                   : cell.isEmpty()     ? '.'
                                        : static_cast<char>(cell.code());
        }
        return out;
    }

 private:
    std::uint64_t generations_ = 0;
    ScreenRows rows_;
};

StoredCell cellOf(char character) {
    return StoredCell{}.with(character, 1);
}

TEST(BufferLineTests, EditsShiftAndFillWithinTheMarginAndCutNoWideCharacterInHalf) {
    struct Case {
        std::string_view before;
        void (*edit)(BufferLine);
        std::string_view after;
    };
    const Case cases[] = {
        {"abcdef", [](BufferLine line) { line.insertCells(1, 2, 5, cellOf('x')); }, "axxbcd"},
        {"abcdef", [](BufferLine line) { line.insertCells(1, 2, 3, cellOf('x')); }, "axxbef"},
        {"abcdef", [](BufferLine line) { line.insertCells(4, 99, 99, {}); }, "abcd.."},
        {"ab....", [](BufferLine line) { line.insertCells(1, 1, 5, {}); }, "a.b..."},
        {"ab|'ef", [](BufferLine line) { line.insertCells(3, 1, 5, cellOf('x')); }, "ab.x.e"},
        {"abc|'f", [](BufferLine line) { line.insertCells(0, 2, 5, {}); }, "..abc."},
        {"abc|'f", [](BufferLine line) { line.insertCells(0, 1, 3, {}); }, ".abc.f"},
        {"abcdef", [](BufferLine line) { line.deleteCells(1, 2, 5, cellOf('x')); }, "adefxx"},
        {"abcdef", [](BufferLine line) { line.deleteCells(1, 2, 4, {}); }, "ade..f"},
        {"abc...", [](BufferLine line) { line.deleteCells(1, 1, 5, cellOf('x')); }, "ac...x"},
        {"a|'|'f", [](BufferLine line) { line.deleteCells(2, 2, 5, {}); }, "a..f.."},
        {"abcd|'", [](BufferLine line) { line.deleteCells(0, 1, 4, {}); }, "bcd..."},
        {"abcdef", [](BufferLine line) { line.replaceCells(2, 99, {}); }, "ab...."},
        {"a|'|'f", [](BufferLine line) { line.replaceCells(2, 4, cellOf('x')); }, "a.xx.f"},
        {"abcdef", [](BufferLine line) { line.replaceCells(5, 2, cellOf('x')); }, "abcdef"},
        {"a|'|'f", [](BufferLine line) { line.writeAscii(2, "xy", {}); }, "a.xy.f"},
        {"abcdef", [](BufferLine line) { line.writeAscii(4, "xyz", {}); }, "abcdxy"},
        {"......", [](BufferLine line) { line.writeAscii(2, "xyz", {}, 4); }, "..xy.."},
        {"a|'|'f", [](BufferLine line) { line.writeCell(2, 0x4E00, 2, {}); }, "a.|'.f"},
        {"abcdef", [](BufferLine line) { line.writeCell(5, 0x4E00, 2, {}); }, "abcde."},
        {"abcdef", [](BufferLine line) { line.writeCell(77, 'x', 1, {}); }, "abcdex"},
        {"ab|'ef", [](BufferLine line) { line.setCode(1, 0x4E01, 2); }, "a|'.ef"},
        {"ab|'ef", [](BufferLine line) { line.setCode(2, 'x', 1); }, "abx.ef"},
        {"abcdef", [](BufferLine line) { line.copyFrom(line.view(), 0, 2, 4); }, "ababcd"},
        {"abcdef", [](BufferLine line) { line.copyFrom(line.view(), 2, 0, 4); }, "cdefef"},
        {"a|'d|'", [](BufferLine line) { line.copyFrom(line.view(), 2, 4, 1); }, "a|'d.."},
        {"a|'d..", [](BufferLine line) { line.copyFrom(line.view(), 0, 4, 2); }, "a|'da."},
    };
    for (const Case& each : cases) {
        Row row(each.before);
        each.edit(row.line());
        EXPECT_EQ(row.text(), each.after) << "from " << each.before;
    }
}

TEST(BufferLineTests, SelectiveErasingLeavesProtectedCells) {
    Row row("abcdef");
    Pen pen;
    pen.setIsProtected(true);
    row.line().writeAscii(2, "PQ", pen);
    row.line().eraseUnprotected(0, 6, {});
    EXPECT_EQ(row.text(), "..PQ..");
    EXPECT_TRUE(row.line().at(2).isProtected());
}

TEST(BufferLineTests, LengthsCountTheLastCharacterWithItsWidth) {
    EXPECT_EQ(Row("......").line().view().getTrimmedLength(), 0);
    EXPECT_EQ(Row("ab.|'.").line().view().getTrimmedLength(), 5);
    Row coloured("......");
    coloured.line().fill(Pen({.bg = Color::ansi256(4)}).erased());
    EXPECT_EQ(coloured.line().view().getTrimmedLength(), 0);
    EXPECT_TRUE(coloured.line().view().hasAnyContent());
    EXPECT_FALSE(Row("......").line().view().hasAnyContent());
    EXPECT_EQ(Row("").line().view().getTrimmedLength(), 0);
}

TEST(BufferLineTests, EveryChangeRaisesTheGeneration) {
    Row row("abcdef");
    std::uint64_t last = row.line().view().generation;
    const auto grows = [&] { return std::exchange(last, row.line().view().generation) < last; };
    row.line().copyFrom(row.line().view(), 0, 0, 0);
    EXPECT_TRUE(grows());
    row.line().replaceCells(0, 1, {});
    EXPECT_TRUE(grows());
    row.line().writeAscii(0, "x", {});
    EXPECT_TRUE(grows());
    EXPECT_FALSE(grows());
}

TEST(BufferLineTests, TextShowsClustersAndSkipsRightHalvesWhenAsked) {
    ClusterTable clusters;
    Row row("a|'.......");
    row.line().writeCell(3, clusters.charToIndex("e\u0301"), 1, {});
    row.line().writeCell(4, ClusterTable::firstHandle + 7, 1, {});
    row.line().writeCell(5, 'z', 1, {});
    const RowView view = row.line().view();
    EXPECT_EQ(view.translateToString(clusters), "a一 e\u0301 z    ");
    EXPECT_EQ(view.translateToString(clusters, {.trimsRight = true, .skipsNullCellsFollowingWide = true}),
              "a一e\u0301 z");
    EXPECT_EQ(view.translateToString(clusters, {.startCol = 3, .endCol = 4}), "e\u0301");
    clusters.reset();
    EXPECT_EQ(view.translateToString(clusters, {.startCol = 3, .endCol = 4}), " ");
}

Color anyColor(std::mt19937& random) {
    switch (random() % 4) {
        case 0:
            return Color::ansi256(static_cast<std::uint8_t>(random()));
        case 1:
            return Color::trueColor(static_cast<std::uint8_t>(random()), static_cast<std::uint8_t>(random()),
                                    static_cast<std::uint8_t>(random()));
        case 2:
            return Color::defaultInvertedColor();
        default:
            return Color::defaultColor();
    }
}

TEST(BufferLineTests, APackedCellKeepsEverything) {
    std::mt19937 random(7);
    const std::int32_t codes[] = {0, 'x', 0x10FFFF, ClusterTable::firstHandle, ClusterTable::lastHandle};
    for (int round = 0; round < 10'000; ++round) {
        CharData cell{.code = codes[random() % std::size(codes)],
                      .width = static_cast<std::int8_t>(random() % 3),
                      .payload = {static_cast<std::uint16_t>(random())},
                      .isProtected = random() % 2 == 0,
                      .attribute = {.fg = anyColor(random),
                                    .bg = anyColor(random),
                                    .style = static_cast<Attribute::CharacterStyle>(random() % 256),
                                    .underlineStyle = static_cast<Attribute::UnderlineStyle>(random() % 6)}};
        if (random() % 2 == 0) cell.attribute.underlineColor = anyColor(random);
        ASSERT_EQ(StoredCell::pack(cell).unpack(), cell);
    }
    EXPECT_TRUE(StoredCell::pack(CharData::Null).isDefaultBlank());
    EXPECT_EQ(StoredCell::pack({.code = 0x200000}).unpack().code, ' ');
}

}  // namespace
}  // namespace orvane::testing
