// What frames cost. Bytes: a typed character to the whole frame. Time: a frame in which nothing changed, one typed
// character and a whole frame, to a plain copy of the same cells.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/FrameWriter.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/TerminalDelegate.h"

namespace orvane::benchmark {

namespace {

struct Size {
    int cols;
    int rows;
};

constexpr Size sizes[] = {{80, 24}, {200, 50}, {400, 120}};

class SilentDelegate final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

void require(bool condition, const char* what) {
    if (condition) return;
    fmt::print(stderr, "frame-bench: {}\n", what);
    std::exit(EXIT_FAILURE);
}

/// Full of an agent's coloured words, with a frame of lines, some emoji and ideographs, and a prompt at the bottom.
std::string screenText(const Size& size) {
    std::string text;
    for (int row = 0; row + 1 < size.rows; ++row) {
        std::string line;
        for (int word = 0; line.size() < static_cast<std::size_t>(size.cols) - 30; ++word)
            line += fmt::format("word{} ", (row * 7 + word) % 100);
        text += fmt::format("│ \x1b[38;5;{}m{}\x1b[0m{}\x1b[1m 日本\x1b[0m\r\n", row % 200 + 16, line,
                            row % 10 == 0 ? " 🙂" : "");
    }
    return text + "$ mak";
}

double microsecondsOf(const auto& work, int runs) {
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(runs));
    for (int run = 0; run < runs; ++run)
        times.push_back(timeOf<std::chrono::microseconds>(work));
    return summary(std::move(times)).median;
}

void reportTime(const Size& size, const char* what, double time, double copy, double atMost) {
    report({.name = fmt::format("{} x {}, {}", size.cols, size.rows, what),
            .values = fmt::format("{:.1f} copies  {:.1f}", time / copy, time),
            .unit = "µs",
            .value = time,
            .atMost = atMost});
}

void measure(const Size& size, int runs) {
    SilentDelegate delegate;
    Terminal terminal(delegate, {.cols = size.cols, .rows = size.rows});
    terminal.feed(screenText(size));
    Canvas canvas(size.cols, size.rows);
    const CellRect all{0, 0, size.cols, size.rows};
    const OuterTerminal outer = OuterTerminal::of("xterm-kitty", "truecolor", false);
    FrameWriter writer(outer);
    CanvasPen pen(canvas, all);
    const double painting = microsecondsOf([&] { pen.terminal(all, terminal); }, runs);
    canvas.cursor = {5, size.rows - 1};

    std::string whole;
    const double wholeTime = microsecondsOf(
        [&] {
            writer.invalidate();
            whole = writer.frame(canvas);
        },
        runs);
    std::string bytes;
    const double equalTime = microsecondsOf([&] { bytes = writer.frame(canvas); }, runs);
    require(bytes.empty(), "bytes for an equal canvas");
    char typed = 'a';
    const double typedTime = microsecondsOf(
        [&] {
            typed = typed == 'a' ? 'b' : 'a';
            pen.text(5, size.rows - 1, {&typed, 1}, {});
            bytes = writer.frame(canvas);
        },
        runs);
    // As a shell does it: where the cursor is, which then goes on.
    pen.text(5, size.rows - 1, "e", {});
    canvas.cursor->x = 6;
    bytes = writer.frame(canvas);
    require(!bytes.empty() && bytes.size() < 30, "many bytes for a typed character");

    std::vector<StoredCell> copied(static_cast<std::size_t>(size.cols) * static_cast<std::size_t>(size.rows));
    const double copy = microsecondsOf(
        [&] { std::memcpy(copied.data(), canvas.row(0).data(), copied.size() * sizeof(StoredCell)); }, runs);
    require(copied.back() == canvas.row(size.rows - 1).back(), "the copy is wrong");

    report({.name = fmt::format("{} x {}, bytes of a typed character", size.cols, size.rows),
            .values = fmt::format("{} of {}: 1 to {:.0f}", bytes.size(), whole.size(),
                                  static_cast<double>(whole.size()) / static_cast<double>(bytes.size())),
            .unit = "of a whole frame"});
    reportTime(size, "painting a terminal", painting, copy, 1000);
    reportTime(size, "nothing changed", equalTime, copy, 100);
    reportTime(size, "a typed character", typedTime, copy, 150);
    reportTime(size, "whole", wholeTime, copy, 3000);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    CLI::App app("Measures the frames of the workspace view: their bytes and their time.");
    app.add_flag("--quick", isQuick, "A few frames, to see that it works");
    CLI11_PARSE(app, argc, argv);
    for (const auto& size : sizes)
        measure(size, isQuick ? 3 : 300);
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
