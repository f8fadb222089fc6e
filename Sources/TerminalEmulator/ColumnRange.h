#pragma once

namespace orvane {

/// Columns of a row, `endCol` behind the last.
struct ColumnRange {
    int startCol = 0;
    int endCol = 0;

    bool contains(int col) const { return col >= startCol && col < endCol; }
    bool operator==(const ColumnRange&) const = default;
};

}  // namespace orvane
