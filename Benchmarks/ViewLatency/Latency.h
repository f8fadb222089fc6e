#pragma once

#include <string>
#include <vector>

namespace orvane::benchmark {

/// Of many keys, in microseconds: what one takes as a rule, and what all but one of a hundred keep to.
struct Latency {
    double median = 0;
    double p99 = 0;

    /// At least one sample.
    static Latency of(std::vector<double> microseconds);

    void report(const std::string& name) const;
    /// The ratios, of which neither should exceed 1.
    void reportAgainst(const Latency& peer, const std::string& name) const;
};

}  // namespace orvane::benchmark
