#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TerminalEmulator/ColumnRange.h"

namespace orvane {

enum class LinkMode : std::uint8_t {
    explicitOnly,         ///< links that the program has marked (OSC 8)
    explicitAndImplicit,  ///< addresses in the text too
};

/// A part of a link: columns of one row of the ring.
struct RowRange {
    int row = 0;
    ColumnRange cols;

    bool operator==(const RowRange&) const = default;
};

/// A link with all its parts, so that it opens as one and is underlined as one.
struct LinkMatch {
    std::string text;   ///< the address
    int row = 0;        ///< the row that was asked for
    ColumnRange range;  ///< the part that was asked for, in that row
    bool isExplicit = false;
    /// From top to bottom. One for each row, except that a program may mark several stretches of a row as one link.
    std::vector<RowRange> rowRanges;

    bool operator==(const LinkMatch&) const = default;
};

}  // namespace orvane
