// What the history costs: bytes for each line, the time to break it anew at another width, the time of a scrolled line.
// Medians of five runs of one thread, from the same text each time. Build it in Release.

// NOLINTBEGIN(modernize-use-std-print): g++ 12 has no <print>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"

namespace {

using orvane::Buffer;
using orvane::Pen;

constexpr int runs = 5;
constexpr int logLines = 100'000;

/// A line as logs have them, `length` characters long and different each time.
std::string logLine(int number, std::size_t length) {
    std::string line = "2031-04-07T12:00:00.000Z INFO  worker[" + std::to_string(number) +
                       "]: request served from the cache, 200, 5321 bytes in 12 ms, next in line is the ";
    line.resize(length, 'x');
    return line;
}

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

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "buffer-bench: %s\n", what);
    std::exit(1);
}

void measureMemory(std::size_t length) {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    const std::size_t before = buffer.bytesInUse();
    feed(buffer, logOf(logLines, length));
    std::printf("%3zu characters at 200 columns: %6.1f bytes a history line\n", length,
                static_cast<double>(buffer.bytesInUse() - before) / buffer.yBase());
}

void measureReflow() {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    feed(buffer, logOf(logLines, 96));
    std::vector<double> narrowing;
    std::vector<double> widening;
    std::vector<double> height;
    const int wideRows = buffer.yBase();
    for (int run = 0; run < runs; ++run) {
        narrowing.push_back(milliseconds([&] { buffer.resize(80, 50); }));
        require(buffer.yBase() > 2 * logLines - 100, "narrowing did not break the lines");
        require(buffer.row(1).isWrapped && buffer.row(1).getTrimmedLength() == 16, "a row was not broken right");
        widening.push_back(milliseconds([&] { buffer.resize(200, 50); }));
        require(buffer.yBase() == wideRows, "widening did not restore the rows");
        height.push_back(milliseconds([&] { buffer.resize(200, 30); }));
        buffer.resize(200, 50);
    }
    std::printf("%d lines of 96, 200 to 80 columns: %8.3f ms, back: %8.3f ms\n", logLines, median(narrowing),
                median(widening));
    std::printf("height alone, 50 to 30 rows:           %8.3f ms\n", median(height));
}

/// Rows with wide characters have to be read to know where they break.
void measureWideReflow() {
    Buffer buffer(200, 50, 8, 400'000);
    buffer.fillViewportRows();
    for (int number = 0; number < logLines; ++number) {
        for (int col = 0; col < 96; col += 2)
            buffer.line(49).writeCell(col, 0x4E00 + col, 2, {});
        buffer.scrollUp(0, 49, {});
    }
    std::vector<double> narrowing;
    std::vector<double> widening;
    for (int run = 0; run < runs; ++run) {
        narrowing.push_back(milliseconds([&] { buffer.resize(79, 50); }));
        require(buffer.row(10'000).getTrimmedLength() <= 78, "a wide character was cut");
        widening.push_back(milliseconds([&] { buffer.resize(200, 50); }));
    }
    std::printf("%d lines of 48 wide, 200 to 79 columns: %6.3f ms, back: %8.3f ms\n", logLines, median(narrowing),
                median(widening));
}

void measureScroll(int cols, std::size_t length, int scrollback) {
    const std::vector<std::string> lines = logOf(logLines, length);
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        Buffer buffer(cols, 50, 8, scrollback);
        buffer.fillViewportRows();
        times.push_back(milliseconds([&] { feed(buffer, lines); }));
        require(buffer.yBase() == std::min(scrollback, logLines - 49), "lines are missing");
    }
    const double nanoseconds = median(times) * 1e6 / logLines;
    std::printf("write and scroll %3zu of %3d columns, %6d lines of history: %7.1f ns a line, %7.1f MB/s\n", length,
                cols, scrollback, nanoseconds, static_cast<double>(length) * 1e3 / nanoseconds);
}

}  // namespace

int main() {
    measureMemory(96);
    measureMemory(2);
    measureReflow();
    measureWideReflow();
    measureScroll(200, 96, 400'000);
    measureScroll(200, 96, 10'000);
    measureScroll(80, 78, 10'000);
    measureScroll(80, 2, 10'000);
    measureScroll(80, 78, 0);
}
// NOLINTEND(modernize-use-std-print)
