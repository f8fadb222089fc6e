#pragma once

#include <compare>

namespace orvane {

/// A cell in a buffer; rows count from the oldest of the ring.
struct Position {
    int row = 0;
    int col = 0;

    auto operator<=>(const Position&) const = default;
};

}  // namespace orvane
