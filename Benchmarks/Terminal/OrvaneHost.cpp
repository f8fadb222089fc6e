#include "Terminal/OrvaneHost.h"

#include "Terminal/TrimmedRight.h"

namespace orvane::benchmark {

std::vector<std::string> OrvaneHost::screenText() const {
    std::vector<std::string> rows;
    for (int row = 0; row < terminal_.rows(); ++row) {
        const RowView view = terminal_.getLine(row);
        rows.push_back(trimmedRight(
            view.translateToString(terminal_.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true})));
    }
    return rows;
}

}  // namespace orvane::benchmark
