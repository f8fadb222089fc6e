#include <fmt/format.h>

#include "Support/Report.h"
#include "Terminal/LogHistory.h"
#include "Terminal/Measurements.h"
#include "Terminal/Times.h"

namespace orvane::benchmark {

namespace {

constexpr Geometry narrow{.cols = 80, .rows = wideGeometry.rows};
constexpr Geometry low{.cols = wideGeometry.cols, .rows = 30};
constexpr std::size_t lineLength = 96;

double milliseconds(Terminal& terminal, Geometry geometry) {
    return timesOfRun([&] { terminal.resize(geometry.cols, geometry.rows); }).processor * 1e3;
}

}  // namespace

Measured<void> measureReflow(const Settings& settings) {
    OrvaneHost host(wideGeometry, longScrollback);
    feedLog(host, settings.logLines, lineLength);
    Terminal& terminal = host.terminal();
    const std::string text = terminal.getBufferAsData();
    std::vector<double> narrowing;
    std::vector<double> widening;
    std::vector<double> height;
    for (int run = 0; run < settings.repetitions; ++run) {
        narrowing.push_back(milliseconds(terminal, narrow));
        // Each line takes two rows of 80 columns; the last row of all is empty.
        if (terminal.buffer().yBase() != 2 * settings.logLines + 1 - narrow.rows) {
            return Failure(
                fmt::format("{} rows are in the history of {} lines", terminal.buffer().yBase(), settings.logLines));
        }
        widening.push_back(milliseconds(terminal, wideGeometry));
        if (terminal.getBufferAsData() != text) return Failure("the text is another one when it is wide again");
        height.push_back(milliseconds(terminal, low));
        terminal.resize(wideGeometry.cols, wideGeometry.rows);
    }
    const std::string what =
        fmt::format("{} lines, {} to {} columns", settings.logLines, wideGeometry.cols, narrow.cols);
    reportMilliseconds(what, narrowing);
    reportMilliseconds("and back", widening);
    reportMilliseconds(fmt::format("{} to {} rows", wideGeometry.rows, low.rows), height);
    return {};
}

}  // namespace orvane::benchmark
