#include <fmt/format.h>

#include <cmath>
#include <cstdio>
#include <optional>

#include "Support/Report.h"
#include "Terminal/Measurements.h"
#include "Terminal/OrvaneHost.h"
#include "Terminal/Times.h"
#include "Terminal/VtermHost.h"
#include "Terminal/Workload.h"
#include "TerminalEmulator/Parser/TextScan.h"

namespace orvane::benchmark {

namespace {

constexpr int wideCols = 160;

/// How many times as fast as the peer the geometric mean of such workloads should be; nothing stands for all of them.
double aimOf(std::optional<WorkloadKind> kind, Geometry geometry) {
    if (kind == WorkloadKind::lines) return 15;
    if (kind == WorkloadKind::attributes) return 1.5;
    return geometry.cols >= wideCols ? 10 : 6;
}

struct Run {
    double processorSeconds = 0;  ///< median
    std::vector<std::string> screen;
};

/// A fresh terminal each time, made outside of the time that counts.
template <typename Host>
Run runOf(const std::string& bytes, Geometry geometry, int repetitions) {
    Run run;
    std::vector<double> samples;
    for (; repetitions > 0; --repetitions) {
        Host host(geometry);
        samples.push_back(timesOfRun([&] { feedInChunks(host, bytes); }).processor);
        run.screen = host.screenText();
    }
    run.processorSeconds = summary(samples).median;
    return run;
}

double scanSeconds(const std::string& bytes, int repetitions) {
    std::vector<double> samples;
    std::size_t controls = 0;
    for (; repetitions > 0; --repetitions) {
        samples.push_back(timesOfRun([&] {
                              const auto* at = reinterpret_cast<const std::uint8_t*>(bytes.data());
                              const auto* const end = at + bytes.size();
                              for (; at < end; ++at, ++controls)
                                  at += TextScan::textLength(at, static_cast<std::size_t>(end - at));
                          }).processor);
    }
    // Without its result the compiler would leave the scan out.
    return controls == 0 ? 0 : summary(samples).median;
}

/// Tells loudly where the two screens differ first.
Measured<void> expectSameScreen(const Workload& workload, Geometry geometry, const Run& ours, const Run& peer) {
    if (workload.peerScreen == PeerScreen::different || ours.screen == peer.screen) return {};
    for (std::size_t row = 0; row < ours.screen.size(); ++row) {
        if (ours.screen[row] == peer.screen[row]) continue;
        fmt::print(stderr, "{} at {}: row {} DIFFERS\n  orvane   |{}|\n  libvterm |{}|\n", workload.name,
                   geometry.name(), row, ours.screen[row], peer.screen[row]);
        break;
    }
    return Failure(fmt::format("{} at {} ends with another screen than libvterm's", workload.name, geometry.name()));
}

struct Ratio {
    WorkloadKind kind;
    double value = 0;
};

void reportMean(std::string_view name, std::optional<WorkloadKind> kind, Geometry geometry,
                const std::vector<Ratio>& ratios) {
    double sum = 0;
    int count = 0;
    for (const Ratio& ratio : ratios) {
        if (kind && ratio.kind != *kind) continue;
        sum += std::log(ratio.value);
        ++count;
    }
    if (count == 0) return;
    const double mean = std::exp(sum / count);
    report({.name = fmt::format("mean of {}, {}", name, geometry.name()),
            .values = fmt::format("{:.2f}", mean),
            .unit = "times",
            .value = mean,
            .atLeast = aimOf(kind, geometry)});
}

void printRow(const Workload& workload, Geometry geometry, std::size_t bytes, const Run& ours, const Run& peer,
              double scan) {
    const double ratio = peer.processorSeconds / ours.processorSeconds;
    std::string aim;
    if (workload.kind != WorkloadKind::mixed) {
        const double least = aimOf(workload.kind, geometry);
        aim = fmt::format("aim >= {:g}  {}", least, ratio >= least ? "met" : "not met");
    }
    fmt::print("{:<22}{:>10.1f}{:>12.1f}{:>9.2f}{:>11.2f}   {}\n", workload.name,
               megabytesPerSecond(bytes, ours.processorSeconds), megabytesPerSecond(bytes, peer.processorSeconds),
               ratio, megabytesPerSecond(bytes, scan) / 1e3, aim);
    std::fflush(stdout);
}

}  // namespace

Measured<void> comparePeers(const Settings& settings, Geometry geometry) {
    fmt::print("{:<22}{:>10}{:>12}{:>9}{:>11}\n", geometry.name(), "Orvane", "libvterm", "ratio", "scan");
    fmt::print("{:<22}{:>10}{:>12}{:>9}{:>11}\n", "", "MB/s", "MB/s", "times", "GB/s");
    std::vector<Ratio> ratios;
    Measured<void> result;
    for (const Workload& workload : allWorkloads()) {
        if (!settings.selects(workload.name)) continue;
        const std::string bytes = workload.bytes(geometry, settings.bytes);
        const Run ours = runOf<OrvaneHost>(bytes, geometry, settings.repetitions);
        const Run peer = runOf<VtermHost>(bytes, geometry, settings.repetitions);
        printRow(workload, geometry, bytes.size(), ours, peer, scanSeconds(bytes, settings.repetitions));
        if (auto same = expectSameScreen(workload, geometry, ours, peer); !same) result = same;
        ratios.push_back({.kind = workload.kind, .value = peer.processorSeconds / ours.processorSeconds});
    }
    if (settings.only.empty()) reportMean("all", {}, geometry, ratios);
    reportMean("logs and long lines", WorkloadKind::lines, geometry, ratios);
    reportMean("cells with attributes", WorkloadKind::attributes, geometry, ratios);
    return result;
}

}  // namespace orvane::benchmark
