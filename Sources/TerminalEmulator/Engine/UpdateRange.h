#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvane {

/// The rows of the screen that have changed, and the same by numbers that stay with a row when it scrolls.
class UpdateRange {
 public:
    /// `base` is the number of the screen's top row since the terminal began.
    void add(int startRow, int endRow, std::int64_t base) {
        refreshStart = std::min(refreshStart, startRow);
        refreshEnd = std::max(refreshEnd, endRow);
        scrollInvariantRefreshStart = std::min(scrollInvariantRefreshStart, base + startRow);
        scrollInvariantRefreshEnd = std::max(scrollInvariantRefreshEnd, base + endRow);
    }
    /// The whole screen has scrolled by `count`: every row of it shows another one, but of the numbered rows only the
    /// last ones are new.
    void addScroll(int rows, int count, std::int64_t base) {
        refreshStart = 0;
        refreshEnd = std::max(refreshEnd, rows - 1);
        scrollInvariantRefreshStart = std::min(scrollInvariantRefreshStart, base + rows - count);
        scrollInvariantRefreshEnd = std::max(scrollInvariantRefreshEnd, base + rows - 1);
    }
    bool isEmpty() const { return refreshEnd < 0; }

    int refreshStart = std::numeric_limits<int>::max();
    int refreshEnd = -1;
    std::int64_t scrollInvariantRefreshStart = std::numeric_limits<std::int64_t>::max();
    std::int64_t scrollInvariantRefreshEnd = -1;
};

}  // namespace orvane
