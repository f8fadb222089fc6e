#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::benchmark {

/// One figure that was measured, and what we aim at. Whether it was met is told for a person; the machine may be busy,
/// so nothing fails by it.
struct Figure {
    std::string name;
    /// "min 8.12  median 9.40"
    std::string values;
    std::string_view unit;
    /// The value that is compared with the most or the least that it should be.
    double value = 0;
    std::optional<double> atMost;
    std::optional<double> atLeast;
};

/// Prints the figure as one line, in columns with those of other calls.
void report(const Figure& figure);

/// The least and the median of samples of a time. At least one.
void reportMilliseconds(std::string name, const std::vector<double>& samples);

}  // namespace orvane::benchmark
