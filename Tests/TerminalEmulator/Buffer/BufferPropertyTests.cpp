// Long random rows of typing, scrolling and resizing, after each of which everything that a buffer promises must hold.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "BufferNotation.h"
#include "TerminalEmulator/Buffer/Buffer.h"

namespace orvane::testing {
namespace {

class Random {
 public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    int below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint32_t>(limit)); }
    bool oneIn(int limit) { return below(limit) == 0; }

    Attribute::Color color() {
        const auto byte = [&] { return static_cast<std::uint8_t>(below(256)); };
        if (oneIn(3)) return Attribute::Color::ansi256(byte());
        if (oneIn(2)) return Attribute::Color::trueColor(byte(), byte(), byte());
        return oneIn(5) ? Attribute::Color::defaultInvertedColor() : Attribute::Color::defaultColor();
    }

    Pen pen() {
        if (oneIn(2)) return {};
        Attribute look{.fg = color(), .bg = color()};
        if (oneIn(2)) look.style = static_cast<Attribute::CharacterStyle>(below(256));
        if (oneIn(3)) look.underlineStyle = static_cast<Attribute::UnderlineStyle>(below(6));
        if (oneIn(4)) look.underlineColor = color();
        Pen pen(look, {static_cast<std::uint16_t>(oneIn(4) ? below(65536) : 0)});
        pen.setIsProtected(oneIn(5));
        return pen;
    }

    /// No blanks at its end, so that trimming changes nothing.
    std::u32string text(int most) {
        std::u32string text;
        for (int left = below(most); left >= 0; --left) {
            text += oneIn(6) ? U'一' + static_cast<char32_t>(below(90)) : U'a' + static_cast<char32_t>(below(26));
        }
        return text;
    }

 private:
    std::mt19937 engine_;
};

/// All characters, with a newline behind each logical line.
std::string joined(const Buffer& buffer) {
    std::string all;
    for (const std::string& line : logicalLines(buffer))
        all += line + '\n';
    return all;
}

void expectSuffix(const std::string& whole, const std::string& end, std::uint32_t seed, int step) {
    ASSERT_TRUE(whole.ends_with(end)) << "seed " << seed << ", step " << step << "\n--- whole\n"
                                      << whole << "\n--- end\n"
                                      << end;
}

void typeSomething(Buffer& buffer, Random& random, std::string& model) {
    static const ClusterTable clusters;
    const std::u32string text = random.text(random.oneIn(8) ? 400 : 40);
    type(buffer, text, random.pen());
    for (const char32_t character : text)
        clusters.appendText(static_cast<std::int32_t>(character), model);
    if (random.oneIn(4)) return;
    type(buffer, U"\n");
    model += '\n';
}

TEST(BufferPropertyTests, ResizeStormsLoseOnlyOldestRows) {
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        Random random(seed);
        const int scrollback = random.oneIn(4) ? random.below(8) : random.below(400);
        Buffer buffer(2 + random.below(60), 1 + random.below(20), 8, scrollback);
        buffer.fillViewportRows();
        std::string typed;
        for (int step = 0; step < 150; ++step) {
            if (random.oneIn(3)) {
                const std::string before = joined(buffer);
                const std::uint64_t oldest = buffer.linesTop();
                buffer.resize(2 + random.below(90), 1 + random.below(25));
                expectSuffix(before, joined(buffer), seed, step);
                if (buffer.linesTop() == oldest) {
                    ASSERT_EQ(joined(buffer), before) << "seed " << seed << ", step " << step;
                }
            } else {
                typeSomething(buffer, random, typed);
            }
            std::string expected = typed;
            while (expected.ends_with('\n'))
                expected.pop_back();
            std::string shown = joined(buffer);
            while (shown.ends_with('\n'))
                shown.pop_back();
            expectSuffix(expected, shown, seed, step);
            ASSERT_EQ(textFromCursor(buffer), "") << "seed " << seed << ", step " << step;
            ASSERT_EQ(splitCharacter(buffer), "") << "seed " << seed << ", step " << step;
            ASSERT_LE(buffer.yBase(), scrollback);
            ASSERT_EQ(buffer.count(), buffer.yBase() + buffer.rows());
        }
    }
}

TEST(BufferPropertyTests, AChangeOfWidthKeepsTheCursorOnItsCharacter) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        Buffer buffer(2 + random.below(40), 10 + random.below(10), 8, 4000);
        buffer.fillViewportRows();
        std::string typed;
        for (int count = random.below(30); count >= 0; --count)
            typeSomething(buffer, random, typed);
        // Within the lower half: a width that doubles the rows leaves it on the screen.
        for (int round = 0; round < 10; ++round) {
            buffer.setY(buffer.rows() - 1 - random.below(buffer.rows() / 2));
            buffer.setX(random.below(std::max(1, buffer.row(buffer.yBase() + buffer.y()).getTrimmedLength())));
            buffer.isWrapPending = false;
            const std::string before = textFromCursor(buffer);
            const std::string all = joined(buffer);
            buffer.resize(std::max(2, buffer.cols() / 2 + random.below(buffer.cols() * 2)), buffer.rows());
            ASSERT_EQ(joined(buffer), all) << "seed " << seed;
            if (buffer.y() > 0) {
                ASSERT_EQ(textFromCursor(buffer), before) << "seed " << seed << ", round " << round;
            }
        }
    }
}

TEST(BufferPropertyTests, WideningAfterNarrowingRestoresEveryRow) {
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        Random random(seed);
        Buffer buffer(20 + random.below(60), 5 + random.below(20), 8, 100'000);
        buffer.fillViewportRows();
        std::string typed;
        for (int count = random.below(60); count >= 0; --count)
            typeSomething(buffer, random, typed);
        const int cols = buffer.cols();
        std::vector<std::vector<CharData>> before;
        before.reserve(static_cast<std::size_t>(buffer.count()));
        for (int index = 0; index < buffer.count(); ++index)
            before.push_back(buffer.row(index).getData());
        const std::vector<std::string> rows = ringRows(buffer);
        const std::array state{buffer.yBase(), buffer.x(), buffer.y()};
        buffer.resize(2 + random.below(cols - 2), buffer.rows());
        buffer.resize(cols, buffer.rows());
        ASSERT_EQ(ringRows(buffer), rows) << "seed " << seed;
        ASSERT_EQ((std::array{buffer.yBase(), buffer.x(), buffer.y()}), state) << "seed " << seed;
        for (int index = 0; index < buffer.count(); ++index) {
            ASSERT_EQ(buffer.row(index).getData(), before[static_cast<std::size_t>(index)]) << "seed " << seed;
        }
    }
}

TEST(BufferPropertyTests, AScrollMovesEveryRowWhateverItsWrapFlagSays) {
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        Random random(seed);
        const int cols = 2 + random.below(12);
        const int rows = 1 + random.below(4);
        Buffer buffer(cols, rows, 8, 1000);
        buffer.fillViewportRows();
        std::vector<std::vector<CharData>> expected(static_cast<std::size_t>(rows), RowView{.cols = cols}.getData());
        for (int step = 0; step < 60; ++step) {
            // Any row of the screen may change its flag as long as it is there, as erasing and cursor motion do.
            buffer.line(random.below(rows)).setIsWrapped(random.oneIn(2));
            BufferLine line = buffer.line(rows - 1);
            for (int writes = random.below(3); writes > 0; --writes) {
                line.writeCell(random.below(cols), U'一', 1 + random.below(2), random.pen());
            }
            expected.back() = line.view().getData();
            buffer.scrollUp(0, rows - 1, {}, random.oneIn(2) ? Buffer::NewRow::continues : Buffer::NewRow::startsLine);
            expected.push_back(RowView{.cols = cols}.getData());
            ASSERT_EQ(buffer.count(), static_cast<int>(expected.size())) << "seed " << seed << ", step " << step;
            for (int index = 0; index < buffer.count(); ++index) {
                ASSERT_EQ(buffer.row(index).getData(), expected[static_cast<std::size_t>(index)])
                    << "seed " << seed << ", step " << step << ", row " << index;
            }
        }
    }
}

TEST(BufferPropertyTests, RowsComeOutOfTheHistoryAsTheyWentIn) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        Random random(seed);
        const int cols = 2 + random.below(120);
        std::uint64_t generations = 0;
        ScreenRows scratch(cols, 1, generations);
        History history(cols, {.rows = 1000});
        std::vector<std::vector<CharData>> rows;
        rows.reserve(300);
        for (int count = 0; count < 300; ++count) {
            BufferLine line = scratch.line(0);
            line.fill(random.oneIn(4) ? random.pen().erased() : StoredCell{});
            for (int writes = random.below(8); writes > 0; --writes) {
                const std::int32_t codes[] = {'x', 1, 0x2500, 0x3FFF, 0x4000, 0x1F600, ClusterTable::firstHandle + 3};
                const std::int32_t code = codes[random.below(static_cast<int>(std::size(codes)))];
                line.writeCell(random.below(cols), code, 1 + random.below(2), random.pen());
            }
            const int start = random.below(cols);
            line.writeAscii(start, std::string(static_cast<std::size_t>(random.below(cols)), 'y'), random.pen());
            rows.push_back(line.view().getData());
            history.append(line.view(), History::Next::startsLine);
        }
        HistoryRow row;
        for (std::size_t round = 0; round < rows.size(); ++round) {
            const auto index = static_cast<std::size_t>(random.below(static_cast<int>(rows.size())));
            history.read(index, row);
            ASSERT_EQ((RowView{.cells = row.cells, .cols = cols}.getData()), rows[index]) << "seed " << seed;
        }
        for (; !rows.empty(); rows.pop_back()) {
            ASSERT_EQ(history.rowCount(), rows.size());
            const HistoryRow taken = history.takeNewest();
            ASSERT_EQ((RowView{.cells = taken.cells, .cols = cols}.getData()), rows.back()) << "seed " << seed;
        }
    }
}

TEST(BufferPropertyTests, AnyEditsLeaveWideCharactersWhole) {
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        Random random(seed);
        const int cols = 2 + random.below(20);
        Buffer buffer(cols, 3, 8, 20);
        buffer.fillViewportRows();
        const auto column = [&] { return random.below(cols); };
        for (int step = 0; step < 300; ++step) {
            BufferLine line = buffer.line(random.below(3));
            const StoredCell fill = random.pen().erased();
            switch (random.below(9)) {
                case 0:
                    line.insertCells(column(), column(), column(), fill);
                    break;
                case 1:
                    line.deleteCells(column(), column(), column(), fill);
                    break;
                case 2:
                    line.replaceCells(column(), column(), fill);
                    break;
                case 3:
                    line.copyFrom(buffer.line(random.below(3)).view(), column(), column(), column());
                    break;
                case 4:
                    line.writeAscii(column(), "abc", random.pen());
                    break;
                case 5:
                    line.setCode(column(), U'一', 1 + random.below(2));
                    break;
                case 6:
                    line.eraseUnprotected(column(), column(), fill);
                    break;
                default:
                    line.writeCell(column(), U'一', 2, random.pen());
            }
            if (random.oneIn(50)) buffer.scrollUp(0, random.below(3), fill);
            ASSERT_EQ(splitCharacter(buffer), "") << "seed " << seed << ", step " << step;
        }
    }
}

}  // namespace
}  // namespace orvane::testing
