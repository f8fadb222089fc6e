#include "TerminalEmulator/Links/ImplicitLink.h"

#include <span>

#include "TerminalEmulator/Links/ImplicitLineMap.h"
#include "TerminalEmulator/Links/UrlScan.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {
namespace {

std::vector<RowRange> rowRangesOf(std::span<const ImplicitCellRef> cells) {
    std::vector<RowRange> parts;
    for (const ImplicitCellRef& cell : cells) {
        if (parts.empty() || parts.back().row != cell.row) parts.push_back({cell.row, {cell.col, cell.col}});
        parts.back().cols.endCol = cell.col + cell.width;
    }
    return parts;
}

std::string textOf(const Buffer& buffer, const ClusterTable& clusters, std::span<const ImplicitCellRef> cells) {
    std::string text;
    for (const ImplicitCellRef& cell : cells)
        LogicalLine::appendCell(buffer.row(cell.row).at(cell.col), clusters, text);
    return text;
}

}  // namespace

std::optional<LinkMatch> implicitLink(const Buffer& buffer, const ClusterTable& clusters, Position at) {
    // Most cells that a pointer passes over are blanks; no rows are joined for them.
    if (!UrlScan::isUrlCharacter(clusters.baseScalar(buffer.row(at.row).at(at.col).code()))) return std::nullopt;
    const ImplicitLineMap map = buildImplicitLineMap(buffer, clusters, at);
    const std::optional<std::size_t> index = map.indexOf(at);
    if (!index) return std::nullopt;
    const std::optional<UrlScan::Range> address = UrlScan::addressAt(map.text, *index);
    if (!address) return std::nullopt;
    const auto cells = std::span(map.cells).subspan(address->begin, address->end - address->begin);
    LinkMatch match{.text = textOf(buffer, clusters, cells), .row = at.row, .rowRanges = rowRangesOf(cells)};
    for (const RowRange& part : match.rowRanges) {
        if (part.row == at.row) match.range = part.cols;
    }
    return match;
}

}  // namespace orvane
