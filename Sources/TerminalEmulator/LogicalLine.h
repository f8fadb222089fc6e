#pragma once

#include <cstdint>
#include <string>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Position.h"

/// The text of rows that the wrap flag joins: what search, selection and links share. Rows are those of the ring.
namespace orvane::LogicalLine {

/// How a row goes on in the one below. It is asked before the row itself is read: a view of a row may be gone once
/// another one is read.
enum class Below : std::uint8_t { startsLine, continues, continuesWithWide };
Below below(const Buffer& buffer, int row);
inline bool continuesBelow(const Buffer& buffer, int row) {
    return below(buffer, row) != Below::startsLine;
}

/// The ends of the line that a row is part of, at most `maximumRows` away from it.
int firstRow(const Buffer& buffer, int row, int maximumRows);
int lastRow(const Buffer& buffer, int row, int maximumRows);

/// How many columns of a row are text of its line. All of a row that the next one continues, but not a last column that
/// a wide character left empty when it went to the next row; else up to the last cell with a character.
int textCols(const RowView& row, Below below);
int textCols(const Buffer& buffer, int row);
/// The same, and without blanks at the end of the line that were written.
int textColsWithoutBlanks(const Buffer& buffer, int row);

/// What a cell shows: nothing for the right half of a wide character, a space for an empty cell.
inline void appendCell(const StoredCell& cell, const ClusterTable& clusters, std::string& out) {
    const std::uint32_t code = cell.text & StoredCell::codeMask;
    if (code != 0 && code < 0x80) {
        out += static_cast<char>(code);
    } else if (!cell.isRightHalf()) {
        clusters.appendText(cell.code(), out);
    }
}

/// The columns from `startCol` up to, not including, `endCol`.
void appendCells(const RowView& row, int startCol, int endCol, const ClusterTable& clusters, std::string& out);

/// From the first position up to, not including, the second, with a line feed between rows that are not joined.
std::string text(const Buffer& buffer, const ClusterTable& clusters, Position start, Position end);

/// The column at which the character of a cell starts.
inline int characterCol(const RowView& row, int col) {
    return col > 0 && row.at(col).isRightHalf() ? col - 1 : col;
}
/// The column behind the character of a cell.
inline int colBehindCharacter(const RowView& row, int col) {
    return row.at(col).isWide() ? col + 2 : col + 1;
}

}  // namespace orvane::LogicalLine
