#include "OrvaneCore/Workspace/PaneMetrics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "OrvaneCore/Workspace/PaneFractions.h"

namespace orvane::PaneMetrics {

namespace {

/// Takes up to `deficit` from the entries above `minimum`, the largest first.
void repay(std::vector<double>& sizes, double deficit, double minimum) {
    while (deficit > 0) {
        const auto largest = std::ranges::max_element(sizes);
        if (*largest <= minimum) return;
        const double given = std::min(*largest - minimum, deficit);
        *largest -= given;
        deficit -= given;
    }
}

}  // namespace

std::vector<double> sizes(const std::vector<double>& fractions, double available, double floor) {
    if (fractions.empty()) return {};
    std::vector<double> sizes;
    sizes.reserve(fractions.size());
    for (const double fraction : fractions)
        sizes.push_back(std::floor(available * fraction));
    sizes.back() = std::max(available - std::accumulate(sizes.begin(), sizes.end() - 1, 0.0), 0.0);

    const double minimum = std::min(std::floor(available / static_cast<double>(sizes.size())), floor);
    for (double& size : sizes) {
        if (size >= minimum) continue;
        const double deficit = minimum - size;
        size = minimum;
        repay(sizes, deficit, minimum);
    }
    return sizes;
}

std::vector<PaneSize> childSizes(const PaneNode::Split& split, const PaneSize& in, const PaneSize& floor) {
    const std::size_t count = split.children.size();
    if (count == 0) return {};
    const bool stacked = split.axis == PaneAxis::vertical;
    const double length = stacked ? in.height : in.width;
    const double available = std::max(length - static_cast<double>(count - 1) * dividerThickness, 0.0);
    const bool matching = split.fractions.size() == count;
    const std::vector<double> lengths = sizes(matching ? split.fractions : PaneFractions::equal(count), available,
                                              stacked ? floor.height : floor.width);
    std::vector<PaneSize> result;
    result.reserve(count);
    for (const double along : lengths) {
        result.push_back(stacked ? PaneSize{.width = in.width, .height = along}
                                 : PaneSize{.width = along, .height = in.height});
    }
    return result;
}

std::optional<PaneAxis> splitAxis(const PaneSize& fitting) {
    if ((fitting.width - dividerThickness) * 0.5 >= minWidth) return PaneAxis::horizontal;
    if ((fitting.height - dividerThickness) * 0.5 >= minHeight) return PaneAxis::vertical;
    return std::nullopt;
}

}  // namespace orvane::PaneMetrics
