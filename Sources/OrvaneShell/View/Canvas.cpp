#include "OrvaneShell/View/Canvas.h"

#include <algorithm>

namespace orvane {

namespace {

/// A canvas that is drawn anew for each frame keeps the clusters of all frames, which saves making them again; when
/// they are more than screens show, it forgets them.
constexpr std::int32_t keptClusters = 8192;

}  // namespace

Canvas::Canvas(int cols, int rows) {
    resize(cols, rows);
}

void Canvas::resize(int cols, int rows) {
    cols_ = std::max(cols, 0);
    rows_ = std::max(rows, 0);
    cells_.resize(start(rows_));
    clear();
}

void Canvas::clear() {
    std::ranges::fill(cells_, StoredCell{});
    cursor.reset();
    if (clusters_.lastCharIndex() - ClusterTable::firstHandle > keptClusters) clusters_ = {};
}

}  // namespace orvane
