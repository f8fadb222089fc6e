#include "OrvaneCore/Workspace/PaneFractions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace orvane::PaneFractions {

namespace {

/// A pane that is split a thousand times halves its share down to nothing; this keeps the last ones above zero.
constexpr double smallest = std::numeric_limits<double>::min();

/// Far above what a long row of halvings and divisions rounds away, far below a tenth of a point on any screen.
constexpr double roundingTolerance = 1e-9;

}  // namespace

std::vector<double> equal(std::size_t count) {
    return std::vector<double>(count, 1.0 / static_cast<double>(count));
}

bool fits(const std::vector<double>& fractions, std::size_t count) {
    return fractions.size() == count &&
           std::ranges::all_of(fractions, [](double share) { return std::isfinite(share) && share > 0; });
}

std::vector<double> normalised(std::vector<double> fractions) {
    const double sum = std::accumulate(fractions.begin(), fractions.end(), 0.0);
    if (std::abs(sum - 1) <= roundingTolerance) return fractions;
    if (!std::isfinite(sum) || sum <= 0) return equal(fractions.size());
    for (double& share : fractions)
        share = std::max(share / sum, smallest);
    return fractions;
}

void halve(std::vector<double>& fractions, std::size_t index, std::size_t newIndex) {
    const double half = std::max(fractions[index] * 0.5, smallest);
    fractions[index] = half;
    fractions.insert(fractions.begin() + static_cast<std::ptrdiff_t>(newIndex), half);
}

}  // namespace orvane::PaneFractions
