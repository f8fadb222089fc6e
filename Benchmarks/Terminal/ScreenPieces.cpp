#include <array>

#include "Terminal/Pieces.h"

namespace orvane::benchmark::Pieces {

/// As `watch` does: plain rows of different lengths, each cleared behind its text.
void lightRedraw(Script& script) {
    script.put("\x1B[H\x1B[1mEvery 2.0s: frame {}\x1B[0m\x1B[K", script.next());
    for (int row = 1; row < script.rows(); ++row) {
        script.put("\r\n");
        script.letters(script.below(script.cols()));
        script.put("\x1B[K");
    }
}

void denseCells(Script& script) {
    script.put("\x1B[H");
    for (int cell = script.cols() * script.rows(); cell > 0; --cell) {
        script.put("\x1B[{};38;5;{}m{:c}", script.below(2) * 4, script.below(256), 'a' + script.below(26));
    }
}

/// As pictures are shown: each cell has two pixels, one above the other.
void gradient(Script& script) {
    const int row = script.next();
    for (int col = 0; col < script.cols(); ++col) {
        const int level = col * 255 / script.cols();
        script.put("\x1B[38;2;{0};{1};{2};48;2;{0};{3};{2}m▀", level, row % 256, 255 - level, (row + 1) % 256);
    }
    script.put("\x1B[0m\r\n");
}

namespace {

void frameAround(Script& script, int top, int left, int height, int width) {
    script.moveTo(top, left);
    script.put("┌");
    script.repeat("─", width - 2);
    script.put("┐");
    for (int row = top + 1; row < top + height - 1; ++row) {
        script.moveTo(row, left);
        script.put("│");
        script.moveTo(row, left + width - 1);
        script.put("│");
    }
    script.moveTo(top + height - 1, left);
    script.put("└");
    script.repeat("─", width - 2);
    script.put("┘");
}

/// A list of files whose selected entry moves, and a line that tells about it.
void fileList(Script& script, int selected) {
    for (int row = 1; row < script.rows() - 2; ++row) {
        script.moveTo(row, 2);
        script.put("\x1B[{}m{:>6} ", row == selected ? 7 : 34 + row % 3, script.below(100'000));
        script.letters(script.cols() / 2 - 12);
        script.put("\x1B[0m");
    }
    script.moveTo(script.rows() - 1, 0);
    script.put("\x1B[30;42m entry {} \x1B[0m\x1B[K", selected);
}

}  // namespace

void alternateScreen(Script& script) {
    script.put("\x1B[?1049h\x1B[?25l\x1B[2J");
    frameAround(script, 0, 0, script.rows() - 1, script.cols() / 2);
    frameAround(script, 0, script.cols() / 2, script.rows() - 1, script.cols() - script.cols() / 2);
    for (int frame = 0; frame < 8; ++frame)
        fileList(script, 1 + script.below(script.rows() - 3));
    script.put("\x1B[?1049l\x1B[?25h$ files {}\r\n", script.next());
}

namespace {

constexpr std::array<std::string_view, 6> spinner = {"·", "✢", "✳", "✶", "✻", "✽"};

/// Five rows below what has been said; the cursor stays in the last of them.
void composer(Script& script, int step) {
    const int width = script.cols() - 2;
    script.put("\x1B[2K\x1B[38;5;174m{} Working… ({}s · esc to interrupt)\x1B[39m\r\n", spinner[step % spinner.size()],
               step);
    script.put("\x1B[2K\x1B[38;5;244m╭");
    script.repeat("─", width - 2);
    script.put("╮\r\n\x1B[2K│\x1B[39m > ");
    script.letters(20);
    script.put("\x1B[{}G\x1B[38;5;244m│\r\n\x1B[2K╰", width);
    script.repeat("─", width - 2);
    script.put("╯\r\n\x1B[2K\x1B[2m  ? for shortcuts\x1B[22;39m");
}

}  // namespace

void agent(Script& script) {
    for (int step = 0; step < 12; ++step) {
        composer(script, step);
        script.put("\r\x1B[4A");
    }
    script.put("\x1B[J\x1B[1m●\x1B[22m Edited file-{}.cpp\r\n", script.next());
    for (int line = 0; line < 4; ++line) {
        script.put("  \x1B[{}m{:4} {} ", line % 2 == 0 ? "48;2;34;92;43" : "48;2;122;41;54", line, "+-"[line % 2]);
        script.letters(script.cols() / 2);
        script.put("\x1B[0m\r\n");
    }
}

void synchronizedFrame(Script& script) {
    script.put("\x1B[?2026h");
    for (int change = 0; change < script.rows(); ++change) {
        script.moveTo(script.below(script.rows()), script.below(script.cols() / 2));
        script.put("\x1B[38;2;{};{};200m", script.below(256), script.below(256));
        script.letters(4 + script.below(script.cols() / 2 - 4));
        script.put("\x1B[39m");
    }
    script.put("\x1B[?2026l");
}

}  // namespace orvane::benchmark::Pieces
