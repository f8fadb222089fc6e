// The workspace view beside tmux: from a key to its echo on the terminal, alone and beside a flood, and what a flood
// sends to a terminal, also to one that does not read.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "Support/Report.h"
#include "ViewLatency/Interruption.h"
#include "ViewLatency/Measurements.h"
#include "ViewLatency/PaneProgram.h"

namespace orvane::benchmark {

namespace {

Measured<void> measure(const ViewSettings& settings) {
    if (auto done = measureKeys(settings); !done) return done;
    const std::string lines = PaneProgram::command(PaneProgram::lines);
    for (const Flood& flood : {Flood{"yes", "exec yes"}, Flood{"colours", lines}}) {
        if (auto done = measureFlood(flood, settings); !done) return done;
    }
    return measureStalledTerminal({"colours", lines}, settings);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    CLI::App app("Measures the workspace view beside tmux, in folders of its own.");
    ViewSettings settings;
    bool isQuick = false;
    std::string pane;
    app.add_flag("--quick", isQuick, "A few keys only, to see that it works");
    app.add_option("orvane", settings.orvane, "The program, by default the one built along")->check(CLI::ExistingFile);
    app.add_option(std::string(PaneProgram::option), pane)->group("");  // for itself
    CLI11_PARSE(app, argc, argv);
    if (!pane.empty()) return PaneProgram::run(pane);
    if (isQuick) {
        settings = {.orvane = settings.orvane,
                    .blocks = 2,
                    .keysOfBlock = 10,
                    .floodRounds = 1,
                    .keysInFlood = 20,
                    .stall = std::chrono::milliseconds(200)};
    }
    Interruption::watch();
    const auto measured = measure(settings);
    if (!measured) fmt::print(stderr, "view-latency: {}\n", measured.error());
    return measured ? 0 : 1;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
