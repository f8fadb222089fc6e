#pragma once

#include <cstdint>

#include "TerminalEmulator/Position.h"

namespace orvane {

enum class SelectionMode : std::uint8_t {
    character,
    word,
    row,  ///< whole lines: rows joined by wrapping belong together
    block,
};

/// From a cell up to, not including, a column.
struct SelectionRange {
    Position start;
    Position end;

    bool isEmpty() const { return start == end; }
    bool operator==(const SelectionRange&) const = default;
};

/// Columns of a row, `endCol` behind the last.
struct ColumnRange {
    int startCol = 0;
    int endCol = 0;

    bool contains(int col) const { return col >= startCol && col < endCol; }
    bool operator==(const ColumnRange&) const = default;
};

}  // namespace orvane
