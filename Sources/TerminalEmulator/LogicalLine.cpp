#include "TerminalEmulator/LogicalLine.h"

#include <algorithm>

namespace orvane::LogicalLine {
namespace {

bool isBlank(const StoredCell& cell) {
    return !cell.isRightHalf() && (cell.isEmpty() || cell.code() == ' ');
}

}  // namespace

Below below(const Buffer& buffer, int row) {
    const RowView next = buffer.row(row + 1);
    if (!next.isWrapped) return Below::startsLine;
    return next.at(0).isWide() ? Below::continuesWithWide : Below::continues;
}

int firstRow(const Buffer& buffer, int row, int maximumRows) {
    const int limit = std::max(0, row - maximumRows);
    while (row > limit && buffer.row(row).isWrapped)
        --row;
    return row;
}

int lastRow(const Buffer& buffer, int row, int maximumRows) {
    for (int left = maximumRows; left > 0 && continuesBelow(buffer, row); --left)
        ++row;
    return row;
}

int textCols(const RowView& row, Below below) {
    if (below == Below::startsLine) return row.getTrimmedLength();
    const StoredCell last = row.at(row.cols - 1);
    const bool leavesLast = below == Below::continuesWithWide && last.isEmpty() && !last.isRightHalf();
    return row.cols - (leavesLast ? 1 : 0);
}

int textCols(const Buffer& buffer, int row) {
    const Below next = below(buffer, row);
    return textCols(buffer.row(row), next);
}

int textColsWithoutBlanks(const Buffer& buffer, int row) {
    const Below next = below(buffer, row);
    const RowView view = buffer.row(row);
    int cols = textCols(view, next);
    while (next == Below::startsLine && cols > 0 && isBlank(view.at(cols - 1)))
        --cols;
    return cols;
}

void appendCells(const RowView& row, int startCol, int endCol, const ClusterTable& clusters, std::string& out) {
    for (int col = startCol; col < endCol; ++col)
        appendCell(row.at(col), clusters, out);
}

std::string text(const Buffer& buffer, const ClusterTable& clusters, Position start, Position end) {
    std::string out;
    for (int row = std::max(0, start.row); row <= std::min(end.row, buffer.count() - 1); ++row) {
        const int startCol = row == start.row ? start.col : 0;
        const int endCol = row == end.row ? end.col : textCols(buffer, row);
        const RowView view = buffer.row(row);
        if (row > start.row && !view.isWrapped) out += '\n';
        appendCells(view, startCol, endCol, clusters, out);
    }
    return out;
}

}  // namespace orvane::LogicalLine
