#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// The cell that shows a character of a joined text.
struct ImplicitCellRef {
    int row = 0;
    int col = 0;
    int width = 1;

    bool operator==(const ImplicitCellRef&) const = default;
};

/// One text made of all rows that may hold the address of a cell, without the sides of boxes and the indents between
/// its parts.
struct ImplicitLineMap {
    std::u32string text;                 ///< the first scalar of each character
    std::vector<ImplicitCellRef> cells;  ///< one for each element of the text

    /// The element that a cell shows; nothing for a cell that the text leaves out.
    std::optional<std::size_t> indexOf(Position cell) const;
};

/// `at` must be a cell of the buffer.
ImplicitLineMap buildImplicitLineMap(const Buffer& buffer, const ClusterTable& clusters, Position at);

}  // namespace orvane
