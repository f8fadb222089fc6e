#pragma once

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace orvane::benchmark {

/// Of several runs of the same work: the least that it takes, and what it takes as a rule. The mean is left out, for
/// one run that another process disturbed would decide it.
struct Summary {
    double minimum = 0;
    double median = 0;
};

/// At least one sample. Of an even number the upper one of the two in the middle.
inline Summary summary(std::vector<double> samples) {
    std::ranges::sort(samples);
    return {.minimum = samples.front(), .median = samples[samples.size() / 2]};
}

/// The time that the work takes, in units of `Unit`.
template <typename Unit, typename Work>
double timeOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    std::forward<Work>(work)();
    return std::chrono::duration<double, typename Unit::period>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace orvane::benchmark
