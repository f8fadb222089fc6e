#include "TerminalEmulator/Buffer/Buffer.h"

#include <algorithm>
#include <cassert>

namespace orvane {

Buffer::Buffer(int cols, int rows, int tabStopWidth, std::optional<int> scrollback)
    : tabStops(std::clamp(cols, minimumCols, maximumSize), tabStopWidth),
      cols_(std::clamp(cols, minimumCols, maximumSize)),
      rows_(std::clamp(rows, minimumRows, maximumSize)),
      scrollback_(scrollback),
      history_(cols_, {}),
      scrollBottom_(rows_ - 1),
      marginRight_(cols_ - 1) {
    changeHistorySize(scrollback);
}

void Buffer::setMarginLeft(int col) {
    marginLeft_ = std::clamp(col, 0, cols_ - 1);
}

void Buffer::setMarginRight(int col) {
    marginRight_ = std::clamp(col, 0, cols_ - 1);
}

void Buffer::setScrollTop(int row) {
    scrollTop_ = std::clamp(row, 0, rows_ - 1);
}

void Buffer::setScrollBottom(int row) {
    scrollBottom_ = std::clamp(row, 0, rows_ - 1);
}

void Buffer::setYDisp(int row) {
    yDisp_ = std::clamp(row, 0, yBase());
}

bool Buffer::isCursorInViewPort() const {
    const std::int64_t place = std::int64_t{yBase()} + 2 * std::int64_t{yDisp_};
    return place >= 0 && place < rows_;
}

RowView Buffer::row(int ringIndex) const {
    if (ringIndex < 0 || ringIndex >= count()) return {.cols = cols_};
    if (ringIndex >= yBase()) return screen_.view(ringIndex - yBase());
    return historyRow(static_cast<std::uint64_t>(ringIndex));
}

void Buffer::scrollUp(int top, int bottom, const StoredCell& fill, NewRow newRow) {
    assert(screen_.count() > 0);
    bottom = std::clamp(bottom, 0, rows_ - 1);
    top = std::clamp(top, 0, bottom);
    if (top == 0 && hasScrollback()) rememberTop(nextOfTopRow(bottom, newRow));
    screen_.rotateUp(top, bottom, fill);
    if (newRow == NewRow::continues) screen_.row(bottom).isWrapped = true;
}

void Buffer::deleteRow(int top, int bottom, const StoredCell& fill) {
    assert(screen_.count() > 0);
    bottom = std::clamp(bottom, 0, rows_ - 1);
    screen_.rotateUp(std::clamp(top, 0, bottom), bottom, fill);
}

void Buffer::insertRow(int top, int bottom, const StoredCell& fill) {
    assert(screen_.count() > 0);
    bottom = std::clamp(bottom, 0, rows_ - 1);
    screen_.rotateDown(std::clamp(top, 0, bottom), bottom, fill);
}

void Buffer::clear() {
    history_.clear();
    linesTopAtClear_ = history_.frontRow();
    screen_ = {};
    yDisp_ = x_ = y_ = 0;
    isWrapPending = false;
    scrollTop_ = marginLeft_ = 0;
    scrollBottom_ = rows_ - 1;
    marginRight_ = cols_ - 1;
    cache_ = {};
}

void Buffer::softReset() {
    saved = {};
    marginLeft_ = 0;
    marginRight_ = cols_ - 1;
    scrollTop_ = 0;
}

void Buffer::fillViewportRows(const Attribute& attribute) {
    if (screen_.count() > 0) return;
    screen_ = ScreenRows(cols_, rows_, generations_);
    const StoredCell fill = Pen(attribute).cell();
    for (int y = 0; y < rows_; ++y)
        screen_.line(y).fill(fill);
}

void Buffer::clearHistory() {
    history_.clear();
    yDisp_ = 0;
}

void Buffer::markPayloads(PayloadSet& set) const {
    history_.markPayloads(set);
    for (int y = 0; y < screen_.count(); ++y) {
        for (const StoredCell& cell : screen_.view(y).cells)
            set.insert(cell.payload().code);
    }
    set.insert(pen.payload().code);
    set.insert(saved.pen.payload().code);
}

std::size_t Buffer::bytesInUse() const {
    std::size_t bytes = sizeof(Buffer) + screen_.bytesInUse() + history_.bytesInUse();
    for (const CachedRow& cached : cache_)
        bytes += cached.row.cells.capacity() * sizeof(StoredCell);
    return bytes;
}

/// Rows of the history have generations of their own, above those of the screen, made of what tells them apart: as
/// long as it is the same the row is, however often it is unpacked.
RowView Buffer::historyRow(std::uint64_t index) const {
    constexpr unsigned numberBits = 40;
    const std::uint64_t number = (history_.frontRow() + index) & ((std::uint64_t{1} << numberBits) - 1);
    const std::uint64_t generation = std::uint64_t{1} << 63 | history_.epoch() << numberBits | number;
    auto cached = std::ranges::find(cache_, generation, &CachedRow::generation);
    if (cached == cache_.end()) {
        // The one that was read longest ago: views of the last sixteen rows stay good.
        cached = std::ranges::min_element(cache_, {}, &CachedRow::lastRead);
        history_.read(index, cached->row);
        cached->generation = generation;
    }
    cached->lastRead = ++cacheReads_;
    return {.cells = cached->row.cells,
            .cols = cols_,
            .isWrapped = cached->row.isWrapped,
            .renderMode = cached->row.renderMode,
            .startsPrompt = cached->row.startsPrompt,
            .generation = generation};
}

/// What will stand below the top row of the screen once that is in the history.
History::Next Buffer::nextOfTopRow(int bottom, NewRow newRow) const {
    if (bottom > 0) {
        if (!screen_.row(1).isWrapped) return History::Next::startsLine;
        return screen_.view(1).at(0).isWide() ? History::Next::continuesWithWide : History::Next::continues;
    }
    // The row is not there yet. It starts with a wide character when the last column was left empty, and not else.
    return newRow == NewRow::continues ? History::Next::continuesWithWide : History::Next::startsLine;
}

void Buffer::rememberTop(History::Next next) {
    const bool follows = !holdsView && yDisp_ == yBase();
    const std::uint64_t dropped = history_.frontRow();
    history_.append(screen_.view(0), next);
    if (follows) {
        yDisp_ = yBase();
    } else {
        const auto gone = static_cast<std::int64_t>(history_.frontRow() - dropped);
        yDisp_ = static_cast<int>(std::max<std::int64_t>(0, yDisp_ - gone));
    }
}

}  // namespace orvane
