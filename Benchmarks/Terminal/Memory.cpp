#include <fmt/format.h>

#include "Support/Report.h"
#include "Terminal/LogHistory.h"
#include "Terminal/Measurements.h"
#include "Terminal/Script.h"

namespace orvane::benchmark {

namespace {

Measured<void> measureHistory(const Settings& settings, std::size_t length) {
    OrvaneHost host(wideGeometry, longScrollback);
    const std::size_t before = host.terminal().bytesInUse();
    feedLog(host, settings.logLines, length);
    const int kept = host.terminal().normalBuffer().yBase();
    if (kept != settings.logLines - wideGeometry.rows + 1) {
        return Failure(fmt::format("{} of {} lines are in the history", kept, settings.logLines));
    }
    const double bytes = static_cast<double>(host.terminal().bytesInUse() - before) / kept;
    report({.name = fmt::format("history line of {} characters, {} columns", length, wideGeometry.cols),
            .values = fmt::format("{:.1f}", bytes),
            .unit = "bytes"});
    return {};
}

/// With text in every cell.
std::size_t bytesOfScreen(Geometry geometry) {
    OrvaneHost host(geometry, 0);
    Script script(geometry);
    script.letters(geometry.cols * geometry.rows);
    host.feed(script.bytes());
    return host.terminal().bytesInUse();
}

void measureScreen() {
    constexpr Geometry half{.cols = wideGeometry.cols / 2, .rows = wideGeometry.rows};
    const auto difference = static_cast<double>(bytesOfScreen(wideGeometry)) - static_cast<double>(bytesOfScreen(half));
    report({.name = "cell of the screen, all that grows with it",
            .values = fmt::format("{:.1f}", difference / ((wideGeometry.cols - half.cols) * half.rows)),
            .unit = "bytes"});
}

}  // namespace

Measured<void> measureMemory(const Settings& settings) {
    for (const std::size_t length : {96U, 2U}) {
        if (auto measured = measureHistory(settings, length); !measured) return measured;
    }
    measureScreen();
    return {};
}

}  // namespace orvane::benchmark
