#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "Terminal/LogHistory.h"
#include "Terminal/Measurements.h"
#include "Terminal/PathologicalInput.h"
#include "Terminal/Times.h"
#include "Terminal/Workload.h"

namespace orvane::benchmark {

namespace {

constexpr Geometry geometry;
constexpr int mostRepetitions = 3;

/// The least of a few runs: a ratio of two medians would double what disturbs them.
double leastSeconds(int repetitions, const std::function<Times()>& run) {
    std::vector<double> samples;
    for (int left = std::min(repetitions, mostRepetitions); left > 0; --left)
        samples.push_back(run().processor);
    return summary(samples).minimum;
}

double secondsOf(const std::string& bytes, int repetitions) {
    return leastSeconds(repetitions, [&] {
        OrvaneHost host(geometry);
        return timesOfRun([&] { feedInChunks(host, bytes); });
    });
}

/// Narrower and wider again, with a history that is full.
double resizeSeconds(int times, const Settings& settings) {
    return leastSeconds(settings.repetitions, [&] {
        OrvaneHost host(geometry);
        feedLog(host, historyLines + geometry.rows, 78);
        return timesOfRun([&] {
            for (int time = 0; time < times; ++time)
                host.terminal().resize(time % 2 == 0 ? 60 : geometry.cols, geometry.rows);
        });
    });
}

void printRow(std::string_view name, double once, double tenfold) {
    fmt::print("{:<30}{:>12.3f}{:>12.3f}{:>9.2f}\n", name, once * 1e3, tenfold * 1e3, tenfold / once);
    std::fflush(stdout);
}

/// The shorter input fills the history too, or the longer one would do another kind of work.
void measureWorkload(const Workload& workload, const Settings& settings) {
    const std::string once = workload.bytes(geometry, settings.bytes / 4);
    const std::string tenfold = workload.bytes(geometry, once.size() * 10);
    const double length = static_cast<double>(tenfold.size()) / static_cast<double>(once.size());
    const double seconds = secondsOf(tenfold, settings.repetitions) * 10 / length;
    printRow(workload.name, secondsOf(once, settings.repetitions), seconds);
}

}  // namespace

void measureLinearCost(const Settings& settings) {
    fmt::print("{:<30}{:>12}{:>12}{:>9}\n", "cost of the input's length", "1x, ms", "10x, ms", "10x/1x");
    for (const Workload& workload : allWorkloads()) {
        if (settings.selects(workload.name)) measureWorkload(workload, settings);
    }
    for (const PathologicalInput& input : allPathologicalInputs()) {
        if (!settings.selects(input.name)) continue;
        const int events = settings.pathological / input.divisor;
        printRow(input.name, secondsOf(input.bytes(events), settings.repetitions),
                 secondsOf(input.bytes(events * 10), settings.repetitions));
    }
    if (settings.selects(Question::resizes)) {
        printRow(Question::resizes, resizeSeconds(4, settings), resizeSeconds(40, settings));
    }
}

}  // namespace orvane::benchmark
