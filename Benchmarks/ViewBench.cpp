// What the view costs. A window of 200 x 50 cells with eight panes full of coloured text: the time and the bytes of a
// whole redraw and of one changed cell, the first beside a plain copy of the same cells. And the list of everything
// there is, over 500 sessions, tabs and projects: the time from a key to the frame that shows what it has found.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/FrameWriter.h"
#include "OrvaneShell/View/ViewFrame.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "View/ViewStage.h"

namespace orvane::benchmark {

namespace {

constexpr int cols = 200;
constexpr int rows = 50;
constexpr int panes = 8;
/// What a person takes for at once is some ten times as long.
constexpr double mostMilliseconds = 5;

void require(bool condition, const char* what) {
    if (condition) return;
    fmt::print(stderr, "view-bench: {}\n", what);
    std::exit(EXIT_FAILURE);
}

/// A frame as the view makes it: painted, and what has changed as bytes.
class Screen {
 public:
    explicit Screen(ViewContext& view)
        : view_(view), writer_(OuterTerminal::of("xterm-kitty", "truecolor", false)), canvas_(cols, rows) {}

    void noteChange() { frame_.noteChange(); }
    void forget() { writer_.invalidate(); }
    std::string next() {
        frame_.paint(view_, canvas_);
        return writer_.frame(canvas_);
    }
    const Canvas& canvas() const { return canvas_; }

 private:
    ViewContext& view_;
    ViewFrame frame_{ViewFrame::Form::drawn};
    FrameWriter writer_;
    Canvas canvas_;
};

std::string colouredText(int terminalRows) {
    std::string text;
    for (int row = 0; row < terminalRows; ++row)
        text += fmt::format("\r\n\x1b[38;5;{}mword {} of an agent\x1b[0m and \x1b[1mmore\x1b[0m", row % 200 + 16, row);
    return text;
}

struct Cost {
    double microseconds = 0;
    std::size_t bytes = 0;
};

template <typename Work>
Cost cost(int runs, Work work) {
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(runs));
    std::size_t bytes = 0;
    for (int run = 0; run < runs; ++run)
        times.push_back(timeOf<std::chrono::microseconds>([&] { bytes = work().size(); }));
    return {summary(std::move(times)).median, bytes};
}

double copyTime(const Canvas& canvas, int runs) {
    std::vector<StoredCell> copied(static_cast<std::size_t>(cols) * rows);
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(runs));
    for (int run = 0; run < runs; ++run) {
        times.push_back(timeOf<std::chrono::microseconds>(
            [&] { std::memcpy(copied.data(), canvas.row(0).data(), copied.size() * sizeof(StoredCell)); }));
    }
    require(copied.back() == canvas.row(rows - 1).back(), "the copy is wrong");
    return summary(std::move(times)).median;
}

void reportCost(const char* name, const Cost& measured, double copy, double atMost) {
    report({.name = fmt::format("{} x {}, {} panes, {}", cols, rows, panes, name),
            .values = fmt::format("{:.1f} copies  {:.1f} µs  {} bytes", measured.microseconds / copy,
                                  measured.microseconds, measured.bytes),
            .unit = "",
            .value = measured.microseconds,
            .atMost = atMost});
}

void measureFrames(int runs) {
    ViewStage stage;
    stage.showPanes(panes);
    Screen screen(stage.view());
    (void)screen.next();  // gives the terminals their sizes
    for (Terminal* terminal : stage.terminals())
        terminal->feed(colouredText(terminal->rows()));
    require(!screen.next().empty(), "nothing is drawn");
    const double copy = copyTime(screen.canvas(), runs);
    reportCost("whole redraw",
               cost(runs,
                    [&] {
                        screen.noteChange();
                        screen.forget();
                        return screen.next();
                    }),
               copy, 1000);
    char typed = 'a';
    const auto oneCell = [&] {
        typed = typed == 'a' ? 'b' : 'a';
        stage.terminals().back()->feed(std::string("\x1b[3;4H") + typed);
        return screen.next();
    };
    (void)oneCell();
    const Cost changed = cost(runs, oneCell);
    require(changed.bytes > 0 && changed.bytes < 60, "one cell takes many bytes");
    reportCost("one changed cell", changed, copy, 300);
}

/// The time that the slowest of a hundred takes.
double slowest(std::vector<double> samples) {
    std::ranges::sort(samples);
    return samples[samples.size() * 99 / 100];
}

void reportKeys(const char* name, const std::vector<double>& samples) {
    const Summary usual = summary(samples);
    const double p99 = slowest(samples);
    report({.name = name,
            .values = fmt::format("median {:.2f}  p99 {:.2f} ms: 1 to {:.1f} of the aim", usual.median, p99,
                                  mostMilliseconds / p99),
            .unit = "",
            .value = p99,
            .atMost = mostMilliseconds});
}

void measurePalette(int runs) {
    ViewStage stage;
    const int entries = stage.fill(500);
    Screen screen(stage.view());
    (void)screen.next();
    std::vector<double> openings;
    std::vector<double> keys;
    const auto frame = [&] {
        screen.noteChange();
        require(!screen.next().empty(), "a key changes nothing");
    };
    for (int run = 0; run < runs; ++run) {
        openings.push_back(timeOf<std::chrono::milliseconds>([&] {
            FrameCommands::palette(stage.view());
            frame();
        }));
        for (const char letter : std::string_view("tab pro se")) {
            keys.push_back(timeOf<std::chrono::milliseconds>([&] {
                stage.view().overlay->key(stage.view(), {.character = static_cast<char32_t>(letter)});
                frame();
            }));
        }
        stage.view().close();
        frame();
    }
    reportKeys(fmt::format("palette over {} entries, opened", entries).c_str(), openings);
    reportKeys(fmt::format("palette over {} entries, a key", entries).c_str(), keys);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) {
    try {
        CLI::App app("What a frame of the workspace view costs, and a key in the list of everything");
        bool isQuick = false;
        app.add_flag("--quick", isQuick, "few runs, to see that it works");
        CLI11_PARSE(app, argc, argv);
        orvane::benchmark::measureFrames(isQuick ? 20 : 2000);
        orvane::benchmark::measurePalette(isQuick ? 3 : 100);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "view-bench: {}\n", error.what());
        return EXIT_FAILURE;
    }
}
