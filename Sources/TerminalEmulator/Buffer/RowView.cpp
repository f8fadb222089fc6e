#include "TerminalEmulator/Buffer/RowView.h"

#include <algorithm>

namespace orvane {

std::vector<CharData> RowView::getData() const {
    std::vector<CharData> all;
    all.reserve(static_cast<std::size_t>(cols));
    for (int col = 0; col < cols; ++col)
        all.push_back(charData(col));
    return all;
}

int RowView::getTrimmedLength() const {
    for (std::size_t length = cells.size(); length > 0; --length) {
        const StoredCell& cell = cells[length - 1];
        if (!cell.isEmpty()) return static_cast<int>(length) - 1 + cell.width();
    }
    return 0;
}

bool RowView::hasContent(int col) const {
    const CharData cell = charData(col);
    return cell.code != 0 || cell.attribute != Attribute::empty;
}

bool RowView::hasAnyContent() const {
    for (int col = 0; col < static_cast<int>(cells.size()); ++col) {
        if (hasContent(col)) return true;
    }
    return false;
}

std::string RowView::translateToString(const ClusterTable& clusters, const TextOptions& options) const {
    int end = options.endCol < 0 ? cols : std::min(options.endCol, cols);
    if (options.trimsRight) end = std::min(end, getTrimmedLength());
    std::string text;
    for (int col = std::max(0, options.startCol); col < end; ++col) {
        const StoredCell cell = at(col);
        if (options.skipsNullCellsFollowingWide && cell.isRightHalf()) continue;
        clusters.appendText(cell.code(), text);
    }
    return text;
}

}  // namespace orvane
