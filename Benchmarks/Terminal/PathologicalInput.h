#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orvane::benchmark {

/// Input that no sensible program writes, and that must cost no more than its length.
struct PathologicalInput {
    std::string_view name;
    /// About so many events: sequences, parameters, characters.
    std::string (*bytes)(int events) = nullptr;
    /// Of 100,000 events, how many are taken: what does much work on purpose takes fewer.
    int divisor = 1;
};

std::span<const PathologicalInput> allPathologicalInputs();

}  // namespace orvane::benchmark
