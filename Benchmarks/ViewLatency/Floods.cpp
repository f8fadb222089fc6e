#include <fmt/format.h>

#include "OrvaneShell/View/ViewTerminal.h"
#include "Support/Report.h"
#include "ViewLatency/Latency.h"
#include "ViewLatency/Measurements.h"
#include "ViewLatency/Typist.h"
#include "ViewLatency/Workspaces.h"

namespace orvane::benchmark {

namespace {

using Seconds = std::chrono::duration<double>;

/// Until what a start leaves to do is done and the flood is what it is for good.
constexpr std::chrono::milliseconds warmUp{1000};

struct Flooded {
    std::vector<double> keys;
    double seconds = 0;
    double bytes = 0;
    double frames = 0;
};

Measured<void> typeInto(Window& window, const ViewSettings& settings, Typist& typist, Flooded& result) {
    if (auto warm = window.readFor(warmUp); !warm) return warm;
    const std::size_t bytes = window.bytesReceived();
    const std::size_t frames = window.framesReceived();
    const auto start = std::chrono::steady_clock::now();
    if (auto typed = typist.type(window, settings.keysInFlood, result.keys); !typed) return typed;
    result.seconds += Seconds(std::chrono::steady_clock::now() - start).count();
    result.bytes += static_cast<double>(window.bytesReceived() - bytes);
    result.frames += static_cast<double>(window.framesReceived() - frames);
    return {};
}

void reportFlood(const std::string& name, const Flooded& peer, const Flooded& ours) {
    const Latency peerKeys = Latency::of(peer.keys);
    const Latency ourKeys = Latency::of(ours.keys);
    peerKeys.report("key beside " + name + ", tmux");
    ourKeys.report("key beside " + name + ", Orvane");
    ourKeys.reportAgainst(peerKeys, "Orvane/tmux, key beside " + name);
    const double rate = ours.bytes / ours.seconds;
    const double peerRate = peer.bytes / peer.seconds;
    report({.name = "to the terminal, " + name + ", tmux",
            .values = fmt::format("{:.0f}", peerRate / 1e3),
            .unit = "kB/s"});
    report({.name = "to the terminal, " + name + ", Orvane",
            .values = fmt::format("{:.0f}  ratio {:.3f}", rate / 1e3, rate / peerRate),
            .unit = "kB/s",
            .value = rate / 1e3,
            .atMost = ViewTerminal::bytesPerSecond / 1e3});
    report({.name = "frames, " + name + ", Orvane",
            .values = fmt::format("{:.1f}", ours.frames / ours.seconds),
            .unit = "a second"});
}

}  // namespace

/// One after another, for two floods at once would have too little of the machine; and again.
Measured<void> measureFlood(const Flood& flood, const ViewSettings& settings) {
    Flooded peer;
    Flooded ours;
    Typist typist;
    for (int round = 0; round < settings.floodRounds; ++round) {
        {
            const auto tmux = TmuxWorkspace::open(flood.command);
            if (!tmux) return Failure(tmux.error());
            if (auto typed = typeInto((*tmux)->window(), settings, typist, peer); !typed) return typed;
        }
        const auto orvane = OrvaneWorkspace::open(settings.orvane, flood.command);
        if (!orvane) return Failure(orvane.error());
        if (auto typed = typeInto((*orvane)->window(), settings, typist, ours); !typed) return typed;
    }
    reportFlood(flood.name, peer, ours);
    return {};
}

}  // namespace orvane::benchmark
