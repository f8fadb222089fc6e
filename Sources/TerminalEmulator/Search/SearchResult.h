#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TerminalEmulator/Position.h"

namespace orvane {

/// A hit, possibly over several rows of one logical line. Rows are those of the ring at the time of the search.
struct SearchResult {
    Position start;              ///< its first cell
    Position end;                ///< behind its last cell, in that cell's row
    std::string text;            ///< what its cells showed
    std::uint64_t linesTop = 0;  ///< of the buffer at the time of the search
    int cols = 0;                ///< of the buffer at the time of the search

    bool operator==(const SearchResult&) const = default;
};

/// Hits from the oldest row on. They do not overlap.
struct SearchHits {
    std::vector<SearchResult> hits;
    bool isTruncated = false;  ///< there are more than was asked for
};

}  // namespace orvane
