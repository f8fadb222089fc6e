#include "TerminalEmulator/Buffer/History.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "TerminalEmulator/Buffer/HistoryCodec.h"

namespace orvane {

void History::append(const RowView& row, Next next) {
    if (limits_.rows == 0) {
        ++frontRow_;
        ++rowsStarted_;
        return;
    }
    if (row.isWrapped) fillNewestRow(row.at(0).isWide());
    HistoryPiece piece{.isContinuation = row.isWrapped,
                       .renderMode = static_cast<std::uint32_t>(row.renderMode),
                       .startsPrompt = row.startsPrompt};
    if (next == Next::startsLine) {
        piece.cells = static_cast<std::uint32_t>(row.getTrimmedLength());
        // A piece without cells would start no row.
        if (row.isWrapped && piece.cells == 0) piece.cells = 1;
    } else {
        const StoredCell last = row.at(row.cols - 1);
        const bool leavesLast = next == Next::continuesWithWide && last.isEmpty() && !last.isRightHalf();
        piece.cells = static_cast<std::uint32_t>(row.cols) - (leavesLast ? 1 : 0);
    }
    std::size_t kept = row.cells.size();
    while (kept > piece.cells && row.cells[kept - 1].isDefaultBlank())
        --kept;
    if (kept >= piece.cells) {
        appendPiece(piece, row.cells.first(kept));
    } else {
        std::vector<StoredCell> whole(row.cells.begin(), row.cells.end());
        whole.resize(piece.cells);
        appendPiece(piece, whole);
    }
    enforceLimits();
}

/// A row that was short when it left, and is continued nevertheless, gets the blanks that the screen showed: what
/// continues it starts a row of its own.
void History::fillNewestRow(bool isWideNext) {
    const std::uint32_t room = cols_ - columnAtEnd_;
    if (rowCount() == 0 || room == 0 || (room == 1 && isWideNext)) return;
    HistoryRow newest;
    readAt(rowPosition(rowsStarted_ - 1), newest);
    newest.cells.resize(cols_);
    appendPiece({.cells = room, .isContinuation = 1}, std::span(newest.cells).last(room));
}

void History::read(std::uint64_t index, HistoryRow& row) const {
    const std::uint64_t number = frontRow_ + index;
    assert(index < rowCount());
    const Position at = hintRow_ == number ? hint_ : rowPosition(number);
    readAt(at, row);
    hint_ = nextRow(at);
    hintRow_ = number + 1;
}

HistoryRow History::takeNewest() {
    assert(rowCount() > 0);
    HistoryRow row;
    const Position at = rowPosition(rowsStarted_ - 1);
    readAt(at, row);
    std::vector<StoredCell> head;
    HistoryPiece piece = pieceAt(at);
    const std::uint32_t start = isFront(at) ? front_.cell : 0;
    if (at.cell > start) {
        HistoryCodec::decode(pages_[at.page].bytes(at.piece), piece.cells, head);
        head = {head.begin() + start, head.begin() + at.cell};
        piece.cells = at.cell - start;
        if (start > 0) piece.isContinuation = 1;
    }
    truncate(at);
    if (!head.empty()) appendPiece(piece, head);
    changedRows();
    return row;
}

/// Takes away the pieces from `at` on.
void History::truncate(const Position& at) {
    if (isFront(at)) {
        const std::uint64_t number = frontRow_;
        clear();
        frontRow_ = rowsStarted_ = number;
        return;
    }
    while (pages_.size() > at.page + 1) {
        pageBytes_ -= pages_.back().bytesInUse();
        pages_.pop_back();
    }
    pages_.back().truncate(at.piece);
    if (pages_.back().count() == 0) {
        pageBytes_ -= pages_.back().bytesInUse();
        pages_.pop_back();
    }
    // Rows are counted anew from the start of the page that is the last one now.
    const HistoryPage& last = pages_.back();
    const Layout end = layoutOfPage(pages_.size() - 1, {last.firstRow, last.columnAtStart});
    rowsStarted_ = end.rows;
    columnAtEnd_ = end.column;
}

void History::setColumns(int cols) {
    cols_ = static_cast<std::uint32_t>(cols);
    Layout layout{frontRow_, 0};
    for (std::size_t page = 0; page < pages_.size(); ++page) {
        pages_[page].firstRow = layout.rows;
        pages_[page].columnAtStart = layout.column;
        layout = layoutOfPage(page, layout);
    }
    rowsStarted_ = layout.rows;
    columnAtEnd_ = layout.column;
    changedRows();
}

void History::setRowLimit(std::uint64_t rows) {
    limits_.rows = rows;
    enforceLimits();
}

void History::setByteLimit(std::size_t bytes) {
    limits_.bytes = bytes;
    enforceLimits();
}

void History::clear() {
    pages_.clear();
    pageBytes_ = 0;
    front_ = {};
    frontRow_ = rowsStarted_;
    columnAtEnd_ = 0;
    changedRows();
}

void History::markPayloads(PayloadSet& set) const {
    for (const HistoryPage& page : pages_)
        page.markPayloads(set);
}

std::size_t History::bytesInUse() const {
    return pageBytes_ + spare_.bytesInUse() + packed_.capacity() + unpacked_.capacity() * sizeof(StoredCell);
}

History::Position History::nextPiece(Position at) const {
    at.cell = 0;
    if (++at.piece == pages_[at.page].count()) {
        at.piece = 0;
        ++at.page;
    }
    return at;
}

std::uint32_t History::cellsThatFit(const Position& at, std::uint32_t room) const {
    const HistoryPiece& piece = pieceAt(at);
    // What fits as a whole breaks nowhere, wherever its wide characters stand.
    if (piece.hasWide == 0 || piece.cells - at.cell <= room) return std::min(piece.cells - at.cell, room);
    return HistoryCodec::cellsThatFit(pages_[at.page].bytes(at.piece), piece.cells, at.cell, room);
}

/// The start of the row behind the one that starts at `at`.
History::Position History::nextRow(Position at) const {
    std::uint32_t column = 0;
    while (true) {
        const std::uint32_t fits = cellsThatFit(at, cols_ - column);
        at.cell += fits;
        column += fits;
        if (at.cell < pieceAt(at).cells) return at;
        at = nextPiece(at);
        if (isEnd(at) || pieceAt(at).isContinuation == 0) return at;
    }
}

History::Position History::rowPosition(std::uint64_t number) const {
    const auto behind = std::ranges::upper_bound(pages_, number, {}, &HistoryPage::firstRow);
    // Among pages in which no row starts, the last one that begins at or before the row is where it is.
    Position at{.page = static_cast<std::size_t>(behind - pages_.begin()) - 1};
    if (at.page == 0) at = front_;
    Layout layout{pages_[at.page].firstRow, pages_[at.page].columnAtStart};
    while (true) {
        Layout behindPiece = layout;
        advance(behindPiece, at);
        if (behindPiece.rows > number) return rowInPiece(at, layout, number);
        layout = behindPiece;
        at = nextPiece(at);
    }
}

/// Finds the start of a row in the piece that it starts in.
History::Position History::rowInPiece(Position at, Layout before, std::uint64_t number) const {
    if (isFront(at) || pieceAt(at).isContinuation == 0) {
        ++before.rows;
        before.column = 0;
    }
    while (before.rows <= number) {
        at.cell += cellsThatFit(at, cols_ - before.column);
        ++before.rows;
        before.column = 0;
    }
    return at;
}

void History::advance(Layout& layout, const Position& at) const {
    const HistoryPiece& piece = pieceAt(at);
    if (isFront(at) || piece.isContinuation == 0) {
        ++layout.rows;
        layout.column = 0;
    }
    const std::uint32_t cells = piece.cells - at.cell;
    const std::uint32_t room = cols_ - layout.column;
    if (cells <= room) {
        layout.column += cells;
        return;
    }
    if (piece.hasWide != 0) {
        layout.rows +=
            HistoryCodec::rowsTaken(pages_[at.page].bytes(at.piece), piece.cells, at.cell, cols_, layout.column);
        return;
    }
    const std::uint32_t further = (cells - room + cols_ - 1) / cols_;
    layout.rows += further;
    layout.column = cells - room - (further - 1) * cols_;
}

History::Layout History::layoutOfPage(std::size_t page, Layout layout) const {
    Position at{.page = page};
    if (page == 0) at = front_;
    for (const std::uint32_t count = pages_[page].count(); at.piece < count; ++at.piece, at.cell = 0) {
        advance(layout, at);
    }
    return layout;
}

void History::readAt(Position at, HistoryRow& row) const {
    row.cells.clear();
    row.isWrapped = at.cell > 0 || pieceAt(at).isContinuation != 0;
    row.renderMode = static_cast<RenderLineMode>(pieceAt(at).renderMode);
    row.startsPrompt = false;
    while (true) {
        const HistoryPiece& piece = pieceAt(at);
        row.startsPrompt |= at.cell == 0 && piece.startsPrompt != 0;
        const auto column = static_cast<std::uint32_t>(row.cells.size());
        const std::uint32_t fits = cellsThatFit(at, cols_ - column);
        unpacked_.clear();
        HistoryCodec::decode(pages_[at.page].bytes(at.piece), piece.cells, unpacked_);
        row.textCells = column + fits;
        const Position next = nextPiece(at);
        const bool endsPiece = at.cell + fits == piece.cells;
        const bool endsRow = !endsPiece || isEnd(next) || pieceAt(next).isContinuation == 0 ||
                             (pieceAt(next).cells > 0 && cellsThatFit(next, cols_ - column - fits) == 0);
        auto end = unpacked_.begin() + at.cell + fits;
        if (endsPiece && endsRow) {  // with what only has a background, as far as the row goes
            end = unpacked_.begin() + std::min<std::ptrdiff_t>(std::ssize(unpacked_), at.cell + cols_ - column);
        }
        row.cells.insert(row.cells.end(), unpacked_.begin() + at.cell, end);
        if (endsRow) return;
        at = next;
    }
}

void History::appendPiece(HistoryPiece piece, std::span<const StoredCell> cells) {
    const HistoryCodec::Packed what = HistoryCodec::encode(cells, piece.cells, packed_);
    piece.hasWide = what.hasWide;
    if (pages_.empty() || !pages_.back().hasRoom(what.bytes.size())) addPage(what.bytes.size());
    HistoryPage& page = pages_.back();
    page.append(piece, what.bytes);
    if (what.hasPayload) {
        pageBytes_ -= page.bytesInUse();
        page.notePayloads(cells);
        pageBytes_ += page.bytesInUse();
    }
    hintRow_.reset();
    if (piece.isContinuation == 0 && piece.cells <= cols_) {  // a line of its own that fits
        ++rowsStarted_;
        columnAtEnd_ = piece.cells;
        return;
    }
    Layout layout{rowsStarted_, columnAtEnd_};
    advance(layout, {.page = pages_.size() - 1, .piece = page.count() - 1});
    rowsStarted_ = layout.rows;
    columnAtEnd_ = layout.column;
}

void History::addPage(std::size_t bytes) {
    HistoryPage fresh = std::exchange(spare_, HistoryPage());
    if (!fresh.hasRoom(bytes)) fresh = HistoryPage(bytes);
    fresh.firstRow = rowsStarted_;
    fresh.columnAtStart = columnAtEnd_;
    pageBytes_ += fresh.bytesInUse();
    pages_.push_back(std::move(fresh));
    if (pages_.size() == 1) front_ = {};
}

void History::dropRows(std::uint64_t count) {
    if (count >= rowCount()) {
        clear();
        return;
    }
    if (count == 1 && dropFrontPiece()) return;
    const Position to = count == 1 ? nextRow(front_) : rowPosition(frontRow_ + count);
    for (std::size_t page = 0; page < to.page; ++page)
        dropPage();
    front_ = {.page = 0, .piece = to.piece, .cell = to.cell};
    frontRow_ += count;
    pages_.front().firstRow = frontRow_;
    hintRow_.reset();
}

/// The oldest row when it is a whole piece and the next one starts in the same page, as nearly all do. Scrolling drops
/// one row for each that it appends.
bool History::dropFrontPiece() {
    HistoryPage& page = pages_.front();
    const std::uint32_t next = front_.piece + 1;
    if (front_.cell != 0 || next == page.count() || page.piece(front_.piece).cells > cols_) return false;
    if (page.piece(next).isContinuation != 0) return false;
    front_.piece = next;
    page.firstRow = ++frontRow_;
    hintRow_.reset();
    return true;
}

void History::dropPage() {
    pageBytes_ -= pages_.front().bytesInUse();
    if (pages_.front().isUsualSize()) {
        spare_ = std::move(pages_.front());
        spare_.reset();
    }
    pages_.pop_front();
}

void History::enforceLimits() {
    if (rowCount() > limits_.rows) dropRows(rowCount() - limits_.rows);
    while (pageBytes_ > limits_.bytes && pages_.size() > 1) {
        // A row that starts in the first page and ends in the second goes whole.
        const std::uint64_t rows = pages_[1].firstRow - frontRow_;
        dropRows(std::max<std::uint64_t>(rows, 1));
    }
}

void History::changedRows() {
    ++epoch_;
    hintRow_.reset();
}

}  // namespace orvane
