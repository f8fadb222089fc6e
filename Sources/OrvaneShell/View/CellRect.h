#pragma once

#include <algorithm>

namespace orvane {

/// A rectangle of cells; `x` and `y` of its first cell, from 0.
struct CellRect {
    int x = 0;
    int y = 0;
    int cols = 0;
    int rows = 0;

    int right() const { return x + cols; }   ///< behind the last column
    int bottom() const { return y + rows; }  ///< behind the last row
    bool isEmpty() const { return cols <= 0 || rows <= 0; }
    bool contains(int col, int row) const { return col >= x && col < right() && row >= y && row < bottom(); }

    /// What both have; an empty one where they have nothing.
    CellRect intersection(const CellRect& other) const {
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        return {left, top, std::max(std::min(right(), other.right()) - left, 0),
                std::max(std::min(bottom(), other.bottom()) - top, 0)};
    }

    bool operator==(const CellRect&) const = default;
};

}  // namespace orvane
