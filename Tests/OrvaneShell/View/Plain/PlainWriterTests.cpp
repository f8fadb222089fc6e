#include "OrvaneShell/View/Plain/PlainWriter.h"

#include <gtest/gtest.h>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

/// A program's terminal, and who has it read out.
struct Reader {
    explicit Reader(int cols = 40, int rows = 6) : terminal(delegate, {.cols = cols, .rows = rows}) {
        writer.wholeScreen(PlainScreen::of(terminal, std::nullopt));
    }

    /// What is told after those bytes; "|" for the end of a line.
    std::string hear(std::string_view bytes) {
        terminal.feed(bytes);
        writer.screen(PlainScreen::of(terminal, writer.firstNumber()));
        return told();
    }
    std::string told() {
        std::string text = writer.take();
        for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++at)
            text.replace(at, 2, "|");
        return text;
    }

    RecordingDelegate delegate;
    Terminal terminal;
    PlainWriter writer;
};

TEST(PlainWriterTest, AShellIsToldAsItComesAndTypingAsItIsTyped) {
    Reader reader;
    EXPECT_EQ(reader.hear("ready> "), "ready> ");
    EXPECT_EQ(reader.hear("l"), "l");
    EXPECT_EQ(reader.hear("s"), "s");
    EXPECT_EQ(reader.hear(" "), " ");
    EXPECT_EQ(reader.hear("-a\r\none\r\ntwo\r\nready> "), "-a|one|two|ready> ");
    // From here on the screen scrolls; and the same lines once more are news.
    EXPECT_EQ(reader.hear("ls\r\none\r\ntwo\r\nready> "), "ls|one|two|ready> ");
    EXPECT_EQ(reader.hear("\r\nready> "), "|ready> ");
    EXPECT_EQ(reader.hear("\r\nready> "), "|ready> ") << "a screen that looks as before has scrolled";
    EXPECT_EQ(reader.hear("abc"), "abc");
    EXPECT_EQ(reader.hear("\b \b"), "|ready> ab") << "of what was erased, the rest";
    EXPECT_EQ(reader.hear(""), "");
    EXPECT_EQ(reader.hear("\x1b[2J\x1b[Hready> "), "|ready> ");
}

TEST(PlainWriterTest, NothingIsLostInAFlood) {
    Reader reader;
    std::string flood;
    std::string expected;
    for (int i = 0; i < 500; ++i) {
        flood += "line " + std::to_string(i) + "\r\n";
        expected += "line " + std::to_string(i) + "|";
    }
    EXPECT_EQ(reader.hear(flood + "$ "), expected + "$ ");
    for (int i = 0; i < 20; ++i)
        flood += flood.size() < 100'000 ? flood : "";
    reader.terminal.feed(flood);
    const PlainScreen screen = PlainScreen::of(reader.terminal, reader.writer.firstNumber());
    EXPECT_GT(screen.lost, 1000);
    EXPECT_LE(screen.rows.size(), static_cast<std::size_t>(PlainScreen::mostScrolled) + 6);
}

TEST(PlainWriterTest, LongLinesAreNotCutAndDecorationIsLeftOut) {
    Reader reader(20, 6);
    const std::string longLine = "a line of fifty characters, which takes three rows";
    EXPECT_EQ(reader.hear(longLine + "\r\n$ "), longLine + "|$ ");
    EXPECT_EQ(reader.hear("0123456789012345678"), "0123456789012345678");
    EXPECT_EQ(reader.hear("now it wraps"), "now it wraps");
    EXPECT_EQ(reader.hear("\r\n╭────────╮\r\n│ box    │\r\n╰────────╯\r\n▐▛███▜▌ art\r\n"), "|box|art|");
    EXPECT_EQ(reader.hear("left          right\r\n"), "left  right|");
}

TEST(PlainWriterTest, WhatTicksInPlaceIsToldOnce) {
    Reader reader;
    EXPECT_EQ(reader.hear("\x1b[?25l✢ Tracing… (1s · 12 tokens)"), "✢ Tracing… (1s · 12 tokens)|");
    EXPECT_EQ(reader.hear("\r✳ Tracing… (2s · 40 tokens)"), "");
    EXPECT_EQ(reader.hear("\r✢ Tracing… (12s · 140 tokens)"), "");
    EXPECT_EQ(reader.hear("\r✢ Reading… (13s · 140 tokens)\x1b[K\r\n"), "✢ Reading… (13s · 140 tokens)|");
    EXPECT_EQ(reader.hear("[##   ] 40%"), "[##  ] 40%|");
    EXPECT_EQ(reader.hear("\r[###  ] 60%"), "");
    EXPECT_EQ(reader.hear("\r[#####] 100%"), "[#####] 100%|");
    // A table that the user changes is told, though it only has other numbers.
    EXPECT_EQ(reader.hear("\r\n12 34"), "12 34|");
    EXPECT_EQ(reader.hear("\r56 78"), "56 78|");
}

TEST(PlainWriterTest, ProgramsThatDrawAreToldByWhatIsNew) {
    Reader reader;
    reader.hear("\x1b[?1049h\x1b[H\x1b[?25lone\r\ntwo\r\nthree\r\nfour\r\nfive\r\nsix");
    EXPECT_EQ(reader.hear("\x1b[Htwo  \r\nthree\r\nfour \r\nfive\r\nsix \r\nseven"), "seven|") << "scrolled by drawing";
    EXPECT_EQ(reader.hear("\x1b[Hone  \r\ntwo  \r\nthree\r\nfour \r\nfive\r\nsix  "), "one|") << "and back";
    EXPECT_EQ(reader.hear("\x1b[2;1Hother"), "other|");

    // A box at the bottom that grows by a row as somebody types: the rows below it only move.
    reader.hear("\x1b[H\x1b[2Jtext\r\n> hello\r\n? for help\r\nstatus");
    EXPECT_EQ(reader.hear("\x1b[2;8H w"), " w");
    EXPECT_EQ(reader.hear("\x1b[2;10Ho"), "o");
    EXPECT_EQ(reader.hear("\x1b[3;1H  more      \r\n? for help\r\nstatus"), "|  more|");
}

TEST(PlainWriterTest, AListIsToldWholeThenOnlyTheChoice) {
    Reader reader;
    const auto list = [&](int chosen, std::string_view typed, std::vector<std::string> labels) {
        Canvas canvas(60, 15);
        const CellRect inside = DialogBox::paint(canvas, "Sessions", 40, 6);
        CanvasPen pen(canvas, inside);
        const int used = pen.text(inside.x, inside.y, "> " + std::string(typed), ViewLook::plain);
        canvas.cursor = Canvas::Cursor{.x = inside.x + used, .y = inside.y};
        for (int i = 0; i < std::ssize(labels); ++i) {
            const Attribute look = i == chosen ? ViewLook::onBar(ViewLook::plain) : ViewLook::plain;
            pen.fill({inside.x, inside.y + 2 + i, inside.cols, 1}, look);
            pen.text(inside.x + 1, inside.y + 2 + i, labels[static_cast<std::size_t>(i)], look);
        }
        reader.writer.dialog(PlainScreen::of(canvas, {0, 0, 60, 15}));
        return reader.told();
    };
    EXPECT_EQ(list(0, "", {"shell", "claude", "codex"}), "Sessions|> |>  shell|claude|codex|");
    EXPECT_EQ(list(1, "", {"shell", "claude", "codex"}), ">  claude|");
    EXPECT_EQ(list(1, "", {"shell", "claude", "codex"}), "");
    EXPECT_EQ(list(0, "c", {"claude", "codex"}), "c") << "the choice is the same";
    EXPECT_EQ(list(0, "co", {"codex"}), "o|>  codex|");
    reader.writer.endDialog();
    EXPECT_EQ(list(0, "", {"shell"}), "Sessions|> |>  shell|");
}

}  // namespace
}  // namespace orvane
