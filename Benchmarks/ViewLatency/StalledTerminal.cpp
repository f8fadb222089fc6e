#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <thread>

#include "Support/Report.h"
#include "Support/ResidentMemory.h"
#include "Support/Statistics.h"
#include "TerminalEmulator/Terminal.h"
#include "ViewLatency/Interruption.h"
#include "ViewLatency/Latency.h"
#include "ViewLatency/Measurements.h"
#include "ViewLatency/PaneProgram.h"
#include "ViewLatency/Workspaces.h"

namespace orvane::benchmark {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pause{5};
constexpr std::chrono::seconds patience{10};

/// What the window shows, by our own emulator.
class Screen : private TerminalDelegate {
 public:
    Terminal terminal{*this, {.cols = Window::cols, .rows = Window::rows}};

    bool shows(const std::vector<std::string>& rows) const {
        const std::string all = text();
        return std::ranges::all_of(rows, [&](const std::string& row) { return all.contains(row); });
    }

 private:
    void send(std::string_view /*bytes*/) override {}

    std::string text() const {
        std::string all;
        for (int row = 0; row < terminal.rows(); ++row)
            all += terminal.getLine(row).translateToString(terminal.clusters()) + '\n';
        return all;
    }
};

enum class Reader { reads, stalls };

/// Asks the host for its projects for so long, while the window is read or not.
Measured<Latency> requestsDuring(OrvaneWorkspace& workspace, std::chrono::milliseconds time, Reader reader) {
    std::vector<double> times;
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
        Measured<JsonValue> projects;
        times.push_back(timeOf<std::chrono::microseconds>([&] { projects = ask(workspace.client(), "projects"); }));
        if (!projects) return Failure(projects.error());
        if (reader == Reader::reads) {
            if (auto read = workspace.window().readFor(pause); !read) return Failure(read.error());
        } else {
            std::this_thread::sleep_for(pause);
            if (auto goesOn = Interruption::check(); !goesOn) return Failure(goesOn.error());
        }
    }
    return Latency::of(times);
}

/// A frame of which a part was lost or torn would leave other rows than the panes have.
Measured<void> expectWholeScreen(OrvaneWorkspace& workspace, const Screen& screen) {
    const auto end = Clock::now() + patience;
    while (Clock::now() < end) {
        const auto rows = workspace.holdFlood();
        if (!rows) return Failure(rows.error());
        if (rows->empty()) return Failure("the panes are empty");
        if (auto read = workspace.window().readFor(10 * pause); !read) return read;
        if (screen.shows(*rows)) return {};
    }
    return Failure("the terminal shows something else than its panes after it has not read");
}

}  // namespace

Measured<void> measureStalledTerminal(const Flood& flood, const ViewSettings& settings) {
    Screen screen;
    const auto workspace = OrvaneWorkspace::open(settings.orvane, flood.command, &screen.terminal);
    if (!workspace) return Failure(workspace.error());
    Window& window = (*workspace)->window();
    const auto reading = requestsDuring(**workspace, settings.stall, Reader::reads);
    if (!reading) return Failure(reading.error());
    const double before = residentBytes((*workspace)->server());
    const auto stalled = requestsDuring(**workspace, settings.stall, Reader::stalls);
    if (!stalled) return Failure(stalled.error());
    const double grown = residentBytes((*workspace)->server()) - before;
    const auto key = window.press();
    if (!key) return Failure(key.error());
    if (auto whole = expectWholeScreen(**workspace, screen); !whole) return whole;
    reading->report("projects beside " + flood.name + ", terminal reads");
    stalled->report("projects, terminal does not read");
    report({.name = "memory that the host took meanwhile", .values = fmt::format("{:.1f}", grown / 1e6), .unit = "MB"});
    report({.name = "key once it reads again", .values = fmt::format("{:.0f}", *key), .unit = "us"});
    report({.name = "screen of that terminal", .values = "what its panes hold", .unit = ""});
    return {};
}

}  // namespace orvane::benchmark
