#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// Rows from `top` up to, not including, `bottom` that move up by `count`, or down when it is negative.
struct RowScroll {
    int top = 0;
    int bottom = 0;
    int count = 0;

    bool operator==(const RowScroll&) const = default;
};

/// What is compared of a row of cells, and what it takes to write it.
struct RowPrint {
    std::uint64_t hash = 0;
    int weight = 0;  ///< cells that are not blank

    static RowPrint of(std::span<const StoredCell> row);
};

/// The scroll that saves most of the writing that makes `before` into `after`; none where it would save too little.
/// Both have as many rows. A hash that two different rows share costs writing, no more.
std::optional<RowScroll> findScroll(std::span<const RowPrint> before, std::span<const RowPrint> after);

}  // namespace orvane
