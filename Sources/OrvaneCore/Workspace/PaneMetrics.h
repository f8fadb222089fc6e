#pragma once

#include <optional>
#include <vector>

#include "OrvaneCore/Workspace/PaneNode.h"

/// How much room panes get. All lengths are points.
namespace orvane::PaneMetrics {

/// The smallest comfortable pane.
inline constexpr double minWidth = 400;
inline constexpr double minHeight = 140;
/// Between two children of a split.
inline constexpr double dividerThickness = 1;

/// Sizes along one axis, in whole points but for the last. They sum to `available` when that is not negative and the
/// fractions sum to 1, and none is below the smaller of `floor` and an equal share rounded down to a whole point.
std::vector<double> sizes(const std::vector<double>& fractions, double available, double floor);

/// The sizes of a split's children when the split fills `in`. `floor` is the least that a child has where there is
/// room.
std::vector<PaneSize> childSizes(const PaneNode::Split& split, const PaneSize& in,
                                 const PaneSize& floor = {.width = minWidth, .height = minHeight});

/// The axis along which a pane can be halved into two comfortable ones, columns before rows; none when it is too small
/// for either.
std::optional<PaneAxis> splitAxis(const PaneSize& fitting);

}  // namespace orvane::PaneMetrics
