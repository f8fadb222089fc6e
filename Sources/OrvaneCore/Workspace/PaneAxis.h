#pragma once

#include <array>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// The direction in which a split lays out its children.
enum class PaneAxis {
    horizontal,  ///< side by side, as columns
    vertical,    ///< one above the other, as rows
};

template <>
struct RawValues<PaneAxis> {
    static constexpr std::array table = {
        rawValueOf(PaneAxis::horizontal, "horizontal"),
        rawValueOf(PaneAxis::vertical, "vertical"),
    };
};

}  // namespace orvane
