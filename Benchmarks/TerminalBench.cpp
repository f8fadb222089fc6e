// What the terminal costs: workloads beside libvterm and beside a plain scan of the same bytes, in the same run; how
// its cost grows with the input; the memory of a line; the time of a reflow. With files, what those cost.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>
#include <vector>

#include "Terminal/Measurements.h"
#include "Terminal/PathologicalInput.h"
#include "Terminal/Workload.h"

namespace orvane::benchmark {

namespace {

std::vector<std::string_view> workloadNames() {
    std::vector<std::string_view> names;
    for (const Workload& workload : allWorkloads())
        names.push_back(workload.name);
    return names;
}

std::vector<std::string_view> inputNames() {
    std::vector<std::string_view> names = workloadNames();
    for (const PathologicalInput& input : allPathologicalInputs())
        names.push_back(input.name);
    names.push_back(Question::resizes);
    return names;
}

bool selectsAny(const Settings& settings, const std::vector<std::string_view>& names) {
    return std::ranges::any_of(names, [&](std::string_view name) { return settings.selects(name); });
}

/// Goes on after a wrong result: the other figures may be right. Whether all was right.
bool tell(const Measured<void>& measured) {
    if (!measured) fmt::print(stderr, "terminal-bench: {}\n", measured.error());
    return measured.has_value();
}

/// Nothing when there is nothing to measure; else whether all was right.
std::optional<bool> measureAll(const Settings& settings) {
    std::optional<bool> isRight;
    const auto add = [&](bool isThisRight) { isRight = isRight.value_or(true) && isThisRight; };
    if (selectsAny(settings, workloadNames())) {
        for (const Geometry geometry : settings.geometries)
            add(tell(comparePeers(settings, geometry)));
    }
    if (selectsAny(settings, inputNames())) {
        measureLinearCost(settings);
        add(true);
    }
    if (settings.selects(Question::memory)) add(tell(measureMemory(settings)));
    if (settings.selects(Question::reflow)) add(tell(measureReflow(settings)));
    return isRight;
}

/// A small version once: whether it works, not how fast it is.
void makeQuick(Settings& settings) {
    settings.repetitions = 1;
    settings.bytes = 100'000;
    settings.logLines = 2000;
    settings.pathological = 1000;
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    Settings settings;
    bool isQuick = false;
    std::string geometry;
    std::vector<std::string> files;
    CLI::App app("Measures the terminal, in MB of input a second of thread CPU time.");
    app.add_flag("--quick", isQuick, "A small version once, to see that it works");
    auto* const only =
        app.add_option("--only", settings.only, "Of the workloads and questions, those whose name contains this");
    app.add_option("--geometry", geometry, "Columns and rows as in 80x25; without it 80x25 and 200x50")
        ->check([](const std::string& text) { return Geometry::parse(text) ? "" : text + " is no geometry"; });
    app.add_option("--reps", settings.repetitions, "Runs whose median counts")->check(CLI::Range(1, 1000));
    app.add_option("files", files, "Files to feed instead of the workloads")->excludes(only);
    CLI11_PARSE(app, argc, argv);
    if (isQuick) makeQuick(settings);
    if (!geometry.empty()) settings.geometries = {*Geometry::parse(geometry)};
    if (!files.empty()) return tell(measureFiles(settings, files)) ? 0 : 1;
    const auto isRight = measureAll(settings);
    if (!isRight) fmt::print(stderr, "terminal-bench: nothing has a name with \"{}\" in it\n", settings.only);
    return isRight.value_or(false) ? 0 : 1;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
