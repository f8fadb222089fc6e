#include "OrvaneShell/View/FrameWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "Support/CanvasEdits.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

using testing::everyFeature;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::OuterScreen;

constexpr OuterTerminal poor{};
constexpr OuterTerminal middling{.colors = OuterTerminal::Colors::indexed,
                                 .hyperlinks = true,
                                 .cursorStyles = true,
                                 .eraseCharacters = true,
                                 .wideAmbiguous = true};

/// A canvas and the screen that follows it.
struct Shown {
    Shown(int cols, int rows, const OuterTerminal& outer = everyFeature)
        : features(outer), canvas(cols, rows), writer(outer), screen(cols, rows) {}

    OuterTerminal features;
    Canvas canvas;
    FrameWriter writer;
    OuterScreen screen;

    int text(int x, int y, std::string_view text, const Attribute& look = {}) {
        return CanvasPen(canvas, {0, 0, canvas.cols(), canvas.rows()}).text(x, y, text, look);
    }
    std::string show() {
        std::string bytes = writer.frame(canvas);
        screen.terminal.feed(bytes);
        EXPECT_EQ(screen.difference(canvas, features), "") << ::testing::PrintToString(bytes);
        return bytes;
    }
    std::string rowText(int y) const {
        return screen.terminal.getLine(y).translateToString(screen.terminal.clusters(),
                                                            {.trimsRight = true, .skipsNullCellsFollowingWide = true});
    }
};

TEST(FrameWriterTests, ATerminalShowsEveryCanvasOfASequence) {
    const std::vector<OuterTerminal> features{everyFeature, middling, poor};
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const testing::BelowLimit below = [&](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
        const OuterTerminal& outer = features[seed % features.size()];
        int cols = static_cast<int>(2 + below(90));
        int rows = static_cast<int>(1 + below(30));
        // Two that take turns have tables of clusters that know nothing of each other.
        std::vector<Canvas> canvases(2, Canvas(cols, rows));
        OuterScreen screen(cols, rows);
        FrameWriter writer(outer);
        for (int step = 0; step < 60; ++step) {
            if (below(20) == 0) {
                cols = static_cast<int>(2 + below(90));
                rows = static_cast<int>(1 + below(30));
                screen.terminal.resize(cols, rows);
                for (Canvas& each : canvases)
                    each.resize(cols, rows);
            }
            if (below(20) == 0) {
                screen.terminal.feed("\x1b[3mdisturbed 日本\x1b]8;;https://other.example\x1b\\\x1b[?25h\r\n");
                writer.invalidate();
            }
            Canvas& canvas = canvases[below(8) / 7];
            for (std::size_t edits = below(8); edits > 0; --edits)
                testing::edit(canvas, below);
            const std::string bytes = writer.frame(canvas);
            const std::size_t cut = below(bytes.size());
            screen.terminal.feed(std::string_view(bytes).substr(0, cut));
            screen.terminal.feed(std::string_view(bytes).substr(cut));
            ASSERT_EQ(screen.difference(canvas, outer), "") << step << " " << ::testing::PrintToString(bytes);
            ASSERT_EQ(writer.frame(canvas), "") << step;
        }
    }
}

TEST(FrameWriterTests, SmallChangesHaveFewBytes) {
    Shown shown(80, 24);
    shown.text(0, 0, "total 12");
    shown.text(0, 1, "main.cpp", {.fg = Attribute::Color::ansi256(4)});
    shown.text(0, 5, "$ mak");
    shown.canvas.cursor = {5, 5, CursorStyle::steadyBar};
    shown.show();
    const std::string hold = "\x1b[?2026h";
    const std::string release = "\x1b[?2026l";
    shown.text(5, 5, "e");
    shown.canvas.cursor->x = 6;
    EXPECT_EQ(shown.show(), hold + "e" + release);
    shown.canvas.cursor->x = 2;
    EXPECT_EQ(shown.show(), "\x1b[6;3H");
    shown.canvas.cursor->x = 4;
    EXPECT_EQ(shown.show(), "\x1b[2C");
    shown.canvas.cursor->style = CursorStyle::steadyBlock;
    EXPECT_EQ(shown.show(), "\x1b[2 q");
    shown.canvas.cursor.reset();
    EXPECT_EQ(shown.show(), "\x1b[?25l");
    shown.text(0, 1, "Make.cpp", {.fg = Attribute::Color::ansi256(4)});
    EXPECT_EQ(shown.show(), hold + "\x1b[2H\x1b[34mMake" + release);
    shown.text(0, 0, "total 34", {});
    EXPECT_EQ(shown.show(), hold + "\x1b[;7H\x1b[m34" + release);
    shown.text(0, 5, "       ");
    EXPECT_EQ(shown.show(), hold + "\x1b[6H\x1b[K" + release);
    shown.text(0, 1, "M ke", {.fg = Attribute::Color::ansi256(4)});
    shown.text(3, 1, "p", {.fg = Attribute::Color::ansi256(5), .style = Attribute::CharacterStyle::bold});
    EXPECT_EQ(shown.show(), hold + "\x1b[2;2H\x1b[34m k\x1b[1;35mp" + release);
}

TEST(FrameWriterTests, WithoutHoldingOutputBackTheCursorHidesMeanwhile) {
    Shown shown(20, 3, poor);
    shown.canvas.cursor = {1, 1};
    shown.show();
    shown.text(0, 0, "x");
    EXPECT_EQ(shown.show(), "\x1b[?25l\x1b[Hx\x1b[2;2H\x1b[?25h");
}

TEST(FrameWriterTests, WhatCannotBeWrittenAsItIsHasAStandIn) {
    struct Case {
        const char* name;
        std::string_view text;
        int width;
        int x;
        const char* shows;
    };
    const Case cases[] = {
        {"escape", "\x1b", 1, 2, "  |"},
        {"C1", "\u009B", 1, 2, "  |"},
        {"line feed within a cluster", "e\n\u0301", 1, 2, "  e\u0301|"},
        {"a lone regional indicator", "🇫", 2, 2, "  F|"},
        {"a lone skin tone", "🏽", 2, 2, "  \uFFFD|"},
        {"a mark", "\u0301", 1, 2, "  \uFFFD|"},
        {"a joiner at the end", "👩\u200D", 2, 2, "  👩|"},
        {"an override of the direction", "a\u202E", 1, 2, "  a|"},
        {"two letters in one cell", "ab", 1, 2, "  a|"},
        {"a wide character in one column", "本", 1, 2, "  \uFFFD|"},
        {"an emoji by selector in one column", "❤\uFE0F", 1, 2, "  ❤|"},
        {"half a character at the end", "本", 2, 9, "         |"},
        {"a text presentation of a wide one", "☔\uFE0E", 1, 2, "  ☔\uFE0E|"},
        {"the same in the last column", "☔\uFE0E", 1, 9, "         \uFFFD|"},
    };
    for (const Case& each : cases) {
        Canvas canvas(10, 1);
        FrameWriter writer(everyFeature);
        OuterScreen screen(10, 1);
        const auto row = canvas.row(0);
        const auto x = static_cast<std::size_t>(each.x);
        row[x] = StoredCell{}.with(canvas.clusters().charToIndex(each.text), each.width);
        if (each.width == 2 && x < 9) row[x + 1] = StoredCell{}.with(0, 0);
        screen.terminal.feed(writer.frame(canvas));
        const std::string shown = screen.terminal.getLine(0).translateToString(
            screen.terminal.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true});
        EXPECT_EQ(shown.substr(0, shown.find_last_not_of(' ') + 1) + "|",
                  std::string(each.shows).substr(0, std::string(each.shows).find_last_not_of(" |") + 1) + "|")
            << each.name;
        EXPECT_EQ(writer.frame(canvas), "") << each.name;
    }
}

/// A terminal for which flags have one column.
TEST(FrameWriterTests, ADifferentOpinionAboutAWidthMovesNothing) {
    for (const char* text : {"🇫🇷 rest", "🇫🇷🇯🇵x", "a🇫🇷b🇯🇵c"}) {
        Canvas canvas(20, 2);
        CanvasPen(canvas, {0, 0, 20, 2}).text(0, 0, "before", {});
        FrameWriter writer(everyFeature);
        RecordingDelegate delegate;
        Terminal terminal(delegate, {.cols = 20, .rows = 2, .regionalIndicatorWidth = RegionalIndicatorWidth::narrow});
        terminal.feed(writer.frame(canvas));
        canvas.clear();
        CanvasPen(canvas, {0, 0, 20, 2}).text(0, 0, text, {});
        terminal.feed(writer.frame(canvas));
        for (int x = 0; x < 20; ++x) {
            const StoredCell cell = canvas.row(0)[static_cast<std::size_t>(x)];
            if (!cell.isRightHalf() && cell.isEmpty()) continue;
            const std::string wanted = cell.isRightHalf() ? " " : canvas.clusters().text(cell.code());
            EXPECT_EQ(terminal.getCharacter(x, 0), wanted) << text << x;
        }
    }
}

TEST(FrameWriterTests, LinksStayOneOverRowsAndFollowTheirText) {
    Shown shown(10, 2);
    shown.text(0, 0, "linklink");
    const TinyAtom first = TinyAtom::lookup(";https://one.example/\x01ä;x");
    testing::link(shown.canvas, 0, 2, 8, first);
    shown.text(0, 1, "more");
    testing::link(shown.canvas, 1, 0, 4, first);
    const std::string bytes = shown.writer.frame(shown.canvas);
    const std::string open = fmt::format("\x1b]8;id=orvane-{};https://one.example/%01%C3%A4;x\x1b\\", first.code);
    EXPECT_THAT(bytes, HasSubstr("li" + open + "nklink\x1b[2Hmore\x1b]8;;\x1b\\"));
    shown.screen.terminal.feed(bytes);
    // Given back by its terminal, and taken for another text at once.
    TinyAtom::release(first.code);
    const TinyAtom second = TinyAtom::lookup("id=a:x=y;https://two.example");
    testing::link(shown.canvas, 0, 2, 8, second);
    testing::link(shown.canvas, 1, 0, 4, second);
    EXPECT_THAT(shown.show(), HasSubstr("\x1b]8;id=a;https://two.example\x1b\\"));
    testing::link(shown.canvas, 0, 0, 10, {});
    EXPECT_THAT(shown.show(), Not(HasSubstr("]8;id")));
    TinyAtom::release(second.code);
}

TEST(FrameWriterTests, TooLongAndEmptyLinksAreTextAlone) {
    for (const std::string& target :
         {std::string("id=1;"), std::string("none"), ";https://" + std::string(3000, 'a')}) {
        Shown shown(10, 1);
        shown.text(0, 0, "link");
        const TinyAtom atom = TinyAtom::lookup(target);
        testing::link(shown.canvas, 0, 0, 4, atom);
        EXPECT_THAT(shown.writer.frame(shown.canvas), Not(HasSubstr("]8;id"))) << target.size();
        TinyAtom::release(atom.code);
    }
}

TEST(FrameWriterTests, ACanvasMayHaveNoCells) {
    for (const auto& [cols, rows] : {std::pair{0, 0}, {0, 3}, {5, 0}, {-1, 2}}) {
        Canvas canvas(cols, rows);
        canvas.cursor = {0, 0};
        CanvasPen pen(canvas, {-2, -2, 10, 10});
        pen.fill({0, 0, 5, 5}, {}, U'x');
        EXPECT_EQ(pen.text(0, 0, "text", {}), 0);
        FrameWriter writer(everyFeature);
        EXPECT_EQ(writer.frame(canvas), "\x1b[?2026h\x1b[m\x1b]8;;\x1b\\\x1b[H\x1b[2J\x1b[?25l\x1b[?2026l");
        EXPECT_EQ(writer.frame(canvas), "");
    }
}

TEST(FrameWriterTests, RowsThatMoveAreNotWrittenAgain) {
    for (const int count : {1, 3, -2}) {
        Shown shown(80, 20);
        const auto draw = [&](int first) {
            for (int y = 1; y < 19; ++y)
                shown.text(0, y, fmt::format("row {} of a long log with 日本 and more {:40}", first + y, ' '),
                           {.fg = Attribute::Color::ansi256(static_cast<std::uint8_t>(first + y))});
        };
        shown.text(0, 0, "tabs", {.style = Attribute::CharacterStyle::inverse});
        shown.text(0, 19, "keys", {.style = Attribute::CharacterStyle::inverse});
        draw(100);
        const std::size_t whole = shown.show().size();
        draw(100 + count);
        const std::string bytes = shown.show();
        EXPECT_LT(bytes.size(), whole / 3) << count << ::testing::PrintToString(bytes);
    }
}

TEST(FrameWriterTests, ClustersWithoutEndAreShownAndForgotten) {
    Shown shown(64, 4);
    for (char32_t base = 0x4E00; base < 0x4E00 + 300; ++base) {
        shown.canvas.clear();
        for (char32_t mark = 0x300; mark < 0x300 + 60; ++mark) {
            std::string text;
            for (const char32_t scalar : {base, mark, U'\u0301'})
                appendUtf8(scalar, text);
            shown.text(static_cast<int>(mark % 32) * 2, static_cast<int>(mark % 4), text);
        }
        shown.show();
    }
}

}  // namespace

}  // namespace orvane
