// What the history costs: bytes for each line, the time to break it anew at another width, the time of a scrolled line.
// Medians of several runs of one thread, from the same text each time.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "Support/LogLine.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "TerminalEmulator/Buffer/Buffer.h"

namespace orvane::benchmark {

namespace {

struct Settings {
    int runs = 5;
    int logLines = 100'000;
};

void feed(Buffer& buffer, const std::vector<std::string>& lines) {
    const Pen pen;
    for (const std::string& line : lines) {
        buffer.line(buffer.y()).writeAscii(0, line, pen);
        if (buffer.y() < buffer.rows() - 1) {
            buffer.setY(buffer.y() + 1);
        } else {
            buffer.scrollUp(0, buffer.rows() - 1, {});
        }
    }
}

std::vector<std::string> logOf(int count, std::size_t length) {
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number)
        lines.push_back(logLine(number, length));
    return lines;
}

void require(bool condition, const char* what) {
    if (condition) return;
    fmt::print(stderr, "buffer-bench: {}\n", what);
    std::exit(EXIT_FAILURE);
}

double resizeMilliseconds(Buffer& buffer, int cols, int rows) {
    return timeOf<std::chrono::milliseconds>([&] { buffer.resize(cols, rows); });
}

void measureMemory(const Settings& settings, std::size_t length) {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    const std::size_t before = buffer.bytesInUse();
    feed(buffer, logOf(settings.logLines, length));
    report({.name = fmt::format("history line of {} characters, 200 columns", length),
            .values = fmt::format("{:.1f}", static_cast<double>(buffer.bytesInUse() - before) / buffer.yBase()),
            .unit = "bytes"});
}

void measureReflow(const Settings& settings) {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    feed(buffer, logOf(settings.logLines, 96));
    std::vector<double> narrowing;
    std::vector<double> widening;
    std::vector<double> height;
    const int wideRows = buffer.yBase();
    for (int run = 0; run < settings.runs; ++run) {
        narrowing.push_back(resizeMilliseconds(buffer, 80, 50));
        require(buffer.yBase() > 2 * settings.logLines - 100, "narrowing did not break the lines");
        require(buffer.row(1).isWrapped && buffer.row(1).getTrimmedLength() == 16, "a row was not broken right");
        widening.push_back(resizeMilliseconds(buffer, 200, 50));
        require(buffer.yBase() == wideRows, "widening did not restore the rows");
        height.push_back(resizeMilliseconds(buffer, 200, 30));
        buffer.resize(200, 50);
    }
    reportMilliseconds(fmt::format("{} lines of 96, 200 to 80 columns", settings.logLines), narrowing);
    reportMilliseconds("and back", widening);
    reportMilliseconds("height alone, 50 to 30 rows", height);
}

/// Rows with wide characters have to be read to know where they break.
void measureWideReflow(const Settings& settings) {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    for (int number = 0; number < settings.logLines; ++number) {
        for (int col = 0; col < 96; col += 2)
            buffer.line(49).writeCell(col, 0x4E00 + col, 2, {});
        buffer.scrollUp(0, 49, {});
    }
    std::vector<double> narrowing;
    std::vector<double> widening;
    for (int run = 0; run < settings.runs; ++run) {
        narrowing.push_back(resizeMilliseconds(buffer, 79, 50));
        require(buffer.row(settings.logLines / 10).getTrimmedLength() <= 78, "a wide character was cut");
        widening.push_back(resizeMilliseconds(buffer, 200, 50));
    }
    reportMilliseconds(fmt::format("{} lines of 48 wide, 200 to 79 columns", settings.logLines), narrowing);
    reportMilliseconds("and back", widening);
}

struct Scrolling {
    int cols = 0;
    std::size_t length = 0;
    int scrollback = 0;
};

void measureScroll(const Settings& settings, const Scrolling& scrolling) {
    const std::vector<std::string> lines = logOf(settings.logLines, scrolling.length);
    std::vector<double> times;
    for (int run = 0; run < settings.runs; ++run) {
        Buffer buffer(scrolling.cols, 50, 8, scrolling.scrollback);
        buffer.fillViewportRows();
        times.push_back(timeOf<std::chrono::nanoseconds>([&] { feed(buffer, lines); }));
        require(buffer.yBase() == std::min(scrolling.scrollback, settings.logLines - 49), "lines are missing");
    }
    const double nanoseconds = summary(times).median / settings.logLines;
    report({.name =
                fmt::format("scroll {} of {} columns, {} kept", scrolling.length, scrolling.cols, scrolling.scrollback),
            .values = fmt::format("{:.1f} ns a line, {:.1f}", nanoseconds,
                                  static_cast<double>(scrolling.length) * 1e3 / nanoseconds),
            .unit = "MB/s"});
}

constexpr Scrolling scrollings[] = {
    {200, 96, 400'000}, {200, 96, 10'000}, {80, 78, 10'000}, {80, 2, 10'000}, {80, 78, 0},
};

void measureAll(const Settings& settings) {
    for (const std::size_t length : {96U, 2U})
        measureMemory(settings, length);
    measureReflow(settings);
    measureWideReflow(settings);
    for (const Scrolling& scrolling : scrollings)
        measureScroll(settings, scrolling);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    CLI::App app("Measures the buffer of the terminal: memory, reflow, scrolling.");
    app.add_flag("--quick", isQuick, "A short log once, to see that it works");
    CLI11_PARSE(app, argc, argv);
    measureAll(isQuick ? Settings{.runs = 1, .logLines = 2000} : Settings{});
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
