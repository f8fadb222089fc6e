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

}  // namespace orvane
