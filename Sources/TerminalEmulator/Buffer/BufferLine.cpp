#include "TerminalEmulator/Buffer/BufferLine.h"

#include <algorithm>
#include <cstdio>

namespace orvane {

bool BufferLine::logsIndexErrors = false;

void BufferLine::setRenderMode(RenderLineMode mode) {
    if (row_->renderMode == mode) return;
    row_->renderMode = mode;
    changed();
}

int BufferLine::writeAscii(int col, std::string_view bytes, const Pen& pen, int endCol) {
    const int room = std::min(endCol, cols_) - col;
    if (col < 0 || room <= 0) return 0;
    const int count = static_cast<int>(std::min(bytes.size(), static_cast<std::size_t>(room)));
    const int end = col + count;
    extendTo(col);
    cutAt(col);
    cutAt(end);
    const StoredCell look = pen.cell();
    StoredCell* const to = row_->cells + col;
    for (int index = 0; index < count; ++index) {
        const auto byte = static_cast<unsigned char>(bytes[static_cast<std::size_t>(index)]);
        to[index] = {look.text | byte, look.foreground, look.background, look.extra};
    }
    row_->length = std::max(row_->length, end);
    changed();
    return count;
}

void BufferLine::setCode(int col, std::int32_t code, int width) {
    if (cols_ == 0) return;
    col = clampedIndex(col);
    extendTo(col + 1);
    cutAt(col);
    const StoredCell look = row_->cells[col].emptied();
    if (col + width > cols_) width = 1;
    const int end = col + std::max(width, 1);
    extendTo(end);
    const bool stays = row_->cells[col].isWide() && width == 2;
    if (!stays) {
        cutAt(col + 1);
        cutAt(end);
        if (width == 2) row_->cells[col + 1] = look.with(0, 0);
    }
    row_->cells[col] = look.with(code, width);
    changed();
}

void BufferLine::setCell(int col, const StoredCell& cell) {
    if (cols_ == 0) return;
    col = clampedIndex(col);
    extendTo(col + 1);
    row_->cells[col] = cell;
    changed();
}

void BufferLine::fill(const StoredCell& fill) {
    row_->length = 0;
    if (!fill.isDefaultBlank()) {
        std::fill_n(row_->cells, cols_, fill);
        row_->length = cols_;
    }
    changed();
}

void BufferLine::replaceCells(int start, int end, const StoredCell& fill) {
    start = std::clamp(start, 0, cols_);
    end = std::clamp(end, start, cols_);
    cutAt(start);
    cutAt(end);
    put(start, end, fill);
    changed();
}

void BufferLine::eraseUnprotected(int start, int end, const StoredCell& fill) {
    start = std::clamp(start, 0, cols_);
    end = std::clamp(end, start, cols_);
    for (int col = start; col < end; ++col) {
        if (!at(col).isProtected()) replaceCells(col, col + 1, fill);
    }
    changed();
}

void BufferLine::insertCells(int pos, int n, int rightMargin, const StoredCell& fill) {
    const int end = std::clamp(rightMargin + 1, 0, cols_);
    pos = std::clamp(pos, 0, end);
    n = std::clamp(n, 0, end - pos);
    cutAt(pos);
    cutAt(end - n);
    cutAt(end);
    const int usedEnd = std::min(row_->length, end - n);
    if (usedEnd > pos) {
        extendTo(usedEnd + n);
        std::copy_backward(row_->cells + pos, row_->cells + usedEnd, row_->cells + usedEnd + n);
    }
    put(pos, pos + n, fill);
    changed();
}

void BufferLine::deleteCells(int pos, int n, int rightMargin, const StoredCell& fill) {
    const int end = std::clamp(rightMargin + 1, 0, cols_);
    pos = std::clamp(pos, 0, end);
    n = std::clamp(n, 0, end - pos);
    cutAt(pos);
    cutAt(pos + n);
    cutAt(end);
    const int usedEnd = std::min(row_->length, end);
    if (usedEnd > pos + n) std::copy(row_->cells + pos + n, row_->cells + usedEnd, row_->cells + pos);
    if (usedEnd > pos) put(std::max(pos, usedEnd - n), usedEnd, {});
    put(end - n, end, fill);
    changed();
}

void BufferLine::copyFrom(const RowView& line, int srcCol, int dstCol, int len) {
    srcCol = std::clamp(srcCol, 0, line.cols);
    dstCol = std::clamp(dstCol, 0, cols_);
    len = std::clamp(len, 0, std::min(line.cols - srcCol, cols_ - dstCol));
    const int end = dstCol + len;
    // The source may be this row: cells are taken before the edges of the destination are cut. Cells past those in use
    // are blank.
    const int used = std::clamp(static_cast<int>(line.cells.size()) - srcCol, 0, len);
    const bool cutsFirst = len > 0 && line.at(srcCol).isRightHalf();
    const bool cutsLast = len > 0 && line.at(srcCol + len - 1).isWide();
    if (len > 0) {
        extendTo(end);
        const bool cutsBefore = dstCol > 0 && row_->cells[dstCol].isRightHalf();
        const bool cutsBehind = end < row_->length && row_->cells[end].isRightHalf();
        if (used > 0) {
            const StoredCell* const from = line.cells.data() + srcCol;
            StoredCell* const to = row_->cells + dstCol;
            if (from < to) {
                std::copy_backward(from, from + used, to + used);
            } else if (from > to) {
                std::copy(from, from + used, to);
            }
        }
        std::fill(row_->cells + dstCol + used, row_->cells + end, StoredCell{});
        if (cutsBefore) row_->cells[dstCol - 1] = row_->cells[dstCol - 1].emptied();
        if (cutsBehind) row_->cells[end] = row_->cells[end].emptied();
        if (cutsFirst) row_->cells[dstCol] = row_->cells[dstCol].emptied();
        if (cutsLast) row_->cells[end - 1] = row_->cells[end - 1].emptied();
        trimEnd();
    }
    changed();
}

void BufferLine::copyFrom(const RowView& line) {
    row_->isWrapped = line.isWrapped;
    row_->renderMode = line.renderMode;
    row_->startsPrompt = line.startsPrompt;
    if (line.cells.data() != row_->cells) row_->length = 0;
    copyFrom(line, 0, 0, cols_);
}

/// Overwrites [start, end), whatever stands across its edges.
void BufferLine::put(int start, int end, const StoredCell& fill) {
    if (fill.isDefaultBlank() && end >= row_->length) {
        row_->length = std::min(row_->length, start);
    } else if (start < end) {
        extendTo(end);
        std::fill(row_->cells + start, row_->cells + end, fill);
    }
}

void BufferLine::trimEnd() {
    while (row_->length > 0 && row_->cells[row_->length - 1].isDefaultBlank())
        --row_->length;
}

int BufferLine::nearestIndex(int col) const {
    if (logsIndexErrors) {
        std::fputs("BufferLine: You passed an index out of range, adjusting to prevent crash, but you should debug\n",
                   stderr);
    }
    return std::clamp(col, 0, cols_ - 1);
}

}  // namespace orvane
