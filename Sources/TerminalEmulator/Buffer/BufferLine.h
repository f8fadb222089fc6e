#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TerminalEmulator/Buffer/Pen.h"
#include "TerminalEmulator/Buffer/RowView.h"

namespace orvane {

/// The head of a row of the screen. Its cells are a piece of the slab of `ScreenRows`.
struct ScreenRow {
    StoredCell* cells = nullptr;  ///< not its own; `cols` of them, of which only the first `length` mean something
    int length = 0;
    bool isWrapped = false;
    RenderLineMode renderMode = RenderLineMode::single;
    bool startsPrompt = false;
    std::uint64_t generation = 0;
};

/// Writing to one row of the screen; good until the rows scroll or change their size.
///
/// Columns are clamped to the row. Writing to a single cell past its end writes the last one and, when
/// `BufferLine::logsIndexErrors` is set, says so on the standard error output.
///
/// No operation leaves half of a wide character behind: where an edge of what it writes, shifts or erases cuts one, the
/// other half is emptied and keeps its look.
class BufferLine {
 public:
    /// For those who hunt such a mistake; off by default.
    static bool logsIndexErrors;

    /// `generations` is the growing counter that all rows of a buffer share.
    BufferLine(ScreenRow& row, int cols, std::uint64_t& generations)
        : row_(&row), cols_(cols), generations_(&generations) {}

    int cols() const { return cols_; }
    RowView view() const {
        return {.cells = {row_->cells, static_cast<std::size_t>(row_->length)},
                .cols = cols_,
                .isWrapped = row_->isWrapped,
                .renderMode = row_->renderMode,
                .startsPrompt = row_->startsPrompt,
                .generation = row_->generation};
    }
    StoredCell at(int col) const {
        const auto index = static_cast<unsigned>(col);  // a negative column lies beyond the end
        return index < static_cast<unsigned>(row_->length) ? row_->cells[col] : StoredCell{};
    }

    bool isWrapped() const { return row_->isWrapped; }
    void setIsWrapped(bool isWrapped) {
        if (row_->isWrapped == isWrapped) return;
        row_->isWrapped = isWrapped;
        changed();
    }
    RenderLineMode renderMode() const { return row_->renderMode; }
    void setRenderMode(RenderLineMode mode);
    void setStartsPrompt(bool startsPrompt) { row_->startsPrompt = startsPrompt; }

    /// Writes a run of printable ASCII from `col` on and gives back how many bytes had room before `endCol` (at most
    /// the row's end).
    int writeAscii(int col, std::string_view bytes, const Pen& pen, int endCol);
    int writeAscii(int col, std::string_view bytes, const Pen& pen) { return writeAscii(col, bytes, pen, cols_); }
    /// Writes a character of one or two columns. A wide one that has no room leaves an empty cell in the last column.
    void writeCell(int col, std::int32_t code, int width, const Pen& pen);
    /// Another character in the same look: a cluster that has grown, perhaps to two columns.
    void setCode(int col, std::int32_t code, int width);
    /// Writes the bare cell and looks at no neighbour: whoever changes width does so for both halves.
    void setCell(int col, const StoredCell& cell);
    void set(int col, const CharData& cell) { setCell(col, StoredCell::pack(cell)); }

    void fill(const StoredCell& fill);  ///< the whole row; flags and render mode stay
    void fill(const StoredCell& fill, int atCol, int len) { replaceCells(atCol, atCol + len, fill); }
    void replaceCells(int start, int end, const StoredCell& fill);      ///< [start, end)
    void eraseUnprotected(int start, int end, const StoredCell& fill);  ///< the same, without protected cells
    /// Shifts what stands in [pos, rightMargin] to the right by `n` columns; what passes the margin is gone.
    void insertCells(int pos, int n, int rightMargin, const StoredCell& fill);
    /// Shifts to the left and fills at the right margin.
    void deleteCells(int pos, int n, int rightMargin, const StoredCell& fill);
    /// Source and destination may be the same row and overlap.
    void copyFrom(const RowView& line, int srcCol, int dstCol, int len);
    void copyFrom(const RowView& line);  ///< cells, flags and render mode

 private:
    void changed() { row_->generation = ++*generations_; }
    void put(int start, int end, const StoredCell& fill);
    void extendTo(int length) {
        if (row_->length >= length) return;
        std::fill(row_->cells + row_->length, row_->cells + length, StoredCell{});
        row_->length = length;
    }
    void trimEnd();
    /// Empties both halves of a wide character that stands across the edge before `col`.
    void cutAt(int col) {
        if (col <= 0 || col >= row_->length || !row_->cells[col].isRightHalf()) return;
        row_->cells[col - 1] = row_->cells[col - 1].emptied();
        row_->cells[col] = row_->cells[col].emptied();
    }
    int clampedIndex(int col) const { return col >= 0 && col < cols_ ? col : nearestIndex(col); }
    int nearestIndex(int col) const;

    ScreenRow* row_;
    int cols_;
    std::uint64_t* generations_;
};

inline void BufferLine::writeCell(int col, std::int32_t code, int width, const Pen& pen) {
    if (cols_ == 0) return;
    col = clampedIndex(col);
    const bool hasRoom = col + width <= cols_;
    const int end = std::min(col + std::max(width, 1), cols_);
    extendTo(col);
    cutAt(col);
    cutAt(end);
    row_->length = std::max(row_->length, end);
    row_->cells[col] = hasRoom ? pen.cell().with(code, width) : pen.cell();
    if (hasRoom && width == 2) row_->cells[col + 1] = pen.cell().with(0, 0);
    changed();
}

}  // namespace orvane
