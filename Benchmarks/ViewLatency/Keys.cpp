#include <fmt/format.h>

#include <array>

#include "Support/Report.h"
#include "Support/ResidentMemory.h"
#include "ViewLatency/Latency.h"
#include "ViewLatency/Measurements.h"
#include "ViewLatency/PaneProgram.h"
#include "ViewLatency/Typist.h"
#include "ViewLatency/Workspaces.h"

namespace orvane::benchmark {

namespace {

void reportAdded(const Latency& with, const Latency& bare) {
    report({.name = "  of it added to the bare program",
            .values = fmt::format("median {:.0f}  p99 {:.0f}", with.median - bare.median, with.p99 - bare.p99),
            .unit = "us"});
}

}  // namespace

Measured<void> measureKeys(const ViewSettings& settings) {
    const TemporaryEnvironment environment;
    const auto bare = Window::openCommand(PaneProgram::command(PaneProgram::echo), environment.variables());
    if (!bare) return Failure(bare.error());
    const auto tmux = TmuxWorkspace::open({});
    if (!tmux) return Failure(tmux.error());
    const auto orvane = OrvaneWorkspace::open(settings.orvane, {});
    if (!orvane) return Failure(orvane.error());

    const std::array windows = {bare->get(), &(*tmux)->window(), &(*orvane)->window()};
    std::array<std::vector<double>, windows.size()> times;
    Typist typist;
    // In turns, so that what else the machine does meets them alike.
    for (int block = 0; block < settings.blocks; ++block) {
        for (std::size_t index = 0; index < windows.size(); ++index) {
            if (auto typed = typist.type(*windows[index], settings.keysOfBlock, times[index]); !typed) return typed;
        }
    }
    const Latency least = Latency::of(times[0]);
    const Latency peer = Latency::of(times[1]);
    const Latency ours = Latency::of(times[2]);
    least.report("key, bare program");
    peer.report("key, tmux");
    reportAdded(peer, least);
    ours.report("key, Orvane");
    reportAdded(ours, least);
    ours.reportAgainst(peer, "Orvane/tmux, key");

    const double peerBytes = residentBytes((*tmux)->server());
    const double ourBytes = residentBytes((*orvane)->server());
    report({.name = "resident memory, one view and one pane",
            .values = fmt::format("Orvane {:.1f}  tmux {:.1f}  ratio {:.1f}", ourBytes / 1e6, peerBytes / 1e6,
                                  ourBytes / peerBytes),
            .unit = "MB"});
    return {};
}

}  // namespace orvane::benchmark
