#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/ClusterTable.h"

namespace orvane {

/// A character as it stands in a cell, or in two.
struct TextCell {
    std::int32_t code = 0;  ///< as in `CharData`
    int width = 1;

    bool operator==(const TextCell&) const = default;
};

/// A text cut into characters as the terminal cuts what programs print. Control characters, and marks with nothing to
/// stand on, are dropped. What has more columns than `limit` may end behind them.
std::vector<TextCell> textCells(std::string_view text, ClusterTable& clusters, int limit);

}  // namespace orvane
