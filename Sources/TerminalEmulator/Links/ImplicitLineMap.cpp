#include "TerminalEmulator/Links/ImplicitLineMap.h"

#include <algorithm>

#include "TerminalEmulator/Links/ImplicitRows.h"

namespace orvane {

std::optional<std::size_t> ImplicitLineMap::indexOf(Position cell) const {
    const auto found = std::ranges::find_if(cells, [&](const ImplicitCellRef& ref) {
        return ref.row == cell.row && cell.col >= ref.col && cell.col < ref.col + ref.width;
    });
    if (found == cells.end()) return std::nullopt;
    return static_cast<std::size_t>(found - cells.begin());
}

ImplicitLineMap buildImplicitLineMap(const Buffer& buffer, const ClusterTable& clusters, Position at) {
    const ImplicitRows rows(buffer, clusters, at);
    const ImplicitRows::Group group = rows.heuristicImplicitGroup();
    ImplicitLineMap map;
    for (int row = group.first; row <= group.last; ++row) {
        const ColumnRange cols = rows.textCols(row, group);
        const RowView view = buffer.row(row);
        for (int col = cols.startCol; col < cols.endCol; ++col) {
            const StoredCell cell = view.at(col);
            if (cell.isRightHalf()) continue;
            map.text += clusters.baseScalar(cell.code());
            map.cells.push_back({.row = row, .col = col, .width = cell.width()});
        }
    }
    return map;
}

}  // namespace orvane
