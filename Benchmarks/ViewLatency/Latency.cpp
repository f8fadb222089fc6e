#include "ViewLatency/Latency.h"

#include <fmt/format.h>

#include <algorithm>

#include "Support/Report.h"

namespace orvane::benchmark {

namespace {

void reportRatio(const std::string& name, double ratio) {
    benchmark::report(
        {.name = name, .values = fmt::format("ratio {:.2f}", ratio), .unit = "times", .value = ratio, .atMost = 1});
}

}  // namespace

Latency Latency::of(std::vector<double> microseconds) {
    std::ranges::sort(microseconds);
    return {.median = microseconds[microseconds.size() / 2], .p99 = microseconds[microseconds.size() * 99 / 100]};
}

void Latency::report(const std::string& name) const {
    benchmark::report({.name = name, .values = fmt::format("median {:.0f}  p99 {:.0f}", median, p99), .unit = "us"});
}

void Latency::reportAgainst(const Latency& peer, const std::string& name) const {
    reportRatio(name + ", median", median / peer.median);
    reportRatio(name + ", p99", p99 / peer.p99);
}

}  // namespace orvane::benchmark
