#include "TerminalEmulator/Buffer/ScreenReflow.h"

#include <algorithm>

namespace orvane {

ScreenReflow::ScreenReflow(const ScreenRows& screen, std::optional<HistoryRow> newest, const ScreenCursor& cursor)
    : cursor_(cursor) {
    if (newest) {
        cells_ = std::move(newest->cells);
        cells_.resize(newest->textCells);
        lines_.push_back({.end = cells_.size(),
                          .isWrapped = newest->isWrapped,
                          .renderMode = newest->renderMode,
                          .startsPrompt = newest->startsPrompt});
    }
    for (int y = 0; y < screen.count(); ++y)
        gather(screen, y);
    if (!lines_.empty()) close(lines_.back());
    makeRoomForCursor();
}

void ScreenReflow::lay(int cols) {
    cols_ = cols;
    rows_.clear();
    for (std::size_t index = 0; index < lines_.size(); ++index) {
        const std::size_t firstRow = rows_.size();
        layLine(lines_[index]);
        if (index == cursorLine_) placeCursor(firstRow);
    }
}

void ScreenReflow::dropBlankRows(int rows) {
    while (rowCount() > rows && rowCount() - 1 > cursor_.y && rows_.back().begin == rows_.back().end)
        rows_.pop_back();
}

RowView ScreenReflow::row(int index) const {
    const Row& row = rows_[static_cast<std::size_t>(index)];
    return {.cells = {cells_.data() + row.begin, row.end - row.begin},
            .cols = cols_,
            .isWrapped = row.isWrapped,
            .renderMode = row.renderMode,
            .startsPrompt = row.startsPrompt};
}

History::Next ScreenReflow::next(int index) const {
    if (index + 1 >= rowCount() || !row(index + 1).isWrapped) return History::Next::startsLine;
    return row(index + 1).at(0).isWide() ? History::Next::continuesWithWide : History::Next::continues;
}

void ScreenReflow::gather(const ScreenRows& screen, int y) {
    const RowView row = screen.view(y);
    const bool joins = row.isWrapped && !lines_.empty();
    if (!joins) {
        if (!lines_.empty()) close(lines_.back());
        lines_.push_back({.begin = cells_.size(), .isWrapped = row.isWrapped, .renderMode = row.renderMode});
    }
    lines_.back().startsPrompt |= row.startsPrompt;
    const std::size_t start = cells_.size();
    if (y == cursor_.y) {
        cursorLine_ = lines_.size() - 1;
        cursorCell_ = start + static_cast<std::size_t>(cursor_.x);
    }
    cells_.insert(cells_.end(), row.cells.begin(), row.cells.end());
    const bool continues = y + 1 < screen.count() && screen.view(y + 1).isWrapped;
    if (continues) {
        // A continued row is full, but for the column that a wide character left because it had no room.
        const StoredCell last = row.at(row.cols - 1);
        const bool leavesLast = screen.view(y + 1).at(0).isWide() && last.isEmpty() && !last.isRightHalf();
        cells_.resize(start + static_cast<std::size_t>(row.cols - (leavesLast ? 1 : 0)));
    }
    lines_.back().end = cells_.size();
}

void ScreenReflow::close(Line& line) const {
    while (line.end > line.begin && cells_[line.end - 1].isDefaultBlank())
        --line.end;
    line.textEnd = line.end;
    while (line.textEnd > line.begin && cells_[line.textEnd - 1].isEmpty() && !cells_[line.textEnd - 1].isRightHalf()) {
        --line.textEnd;
    }
}

/// A cursor to the right of the last text on the screen keeps the blanks before it.
void ScreenReflow::makeRoomForCursor() {
    for (std::size_t index = cursorLine_ + 1; index < lines_.size(); ++index) {
        if (lines_[index].end > lines_[index].begin) return;
    }
    if (lines_.empty() || cursorCell_ < lines_[cursorLine_].textEnd) return;
    Line& line = lines_[cursorLine_];
    const std::size_t end = std::max(line.end, cursorCell_ + 1);
    // The lines below are empty, so that nobody else uses these cells.
    if (cells_.size() < end) cells_.resize(end);
    std::fill(cells_.begin() + static_cast<std::ptrdiff_t>(line.end), cells_.begin() + static_cast<std::ptrdiff_t>(end),
              StoredCell{});
    line.textEnd = cursorCell_ + 1;
    line.end = end;
}

void ScreenReflow::layLine(const Line& line) {
    Row row{.begin = line.begin,
            .isWrapped = line.isWrapped,
            .renderMode = line.renderMode,
            .startsPrompt = line.startsPrompt};
    while ((row.end = rowEnd(row.begin, line.textEnd)) < line.textEnd) {
        rows_.push_back(row);
        row.begin = row.end;
        row.isWrapped = true;
        row.startsPrompt = false;
    }
    row.end = std::min(line.end, row.begin + static_cast<std::size_t>(cols_));
    while (row.end > row.begin && cells_[row.end - 1].isDefaultBlank())
        --row.end;
    rows_.push_back(row);
}

std::size_t ScreenReflow::rowEnd(std::size_t begin, std::size_t end) const {
    const std::size_t full = begin + static_cast<std::size_t>(cols_);
    if (full >= end) return end;
    return cells_[full].isRightHalf() && full - 1 > begin ? full - 1 : full;
}

void ScreenReflow::placeCursor(std::size_t firstRow) {
    std::size_t row = firstRow;
    while (row + 1 < rows_.size() && rows_[row + 1].begin <= cursorCell_)
        ++row;
    const std::size_t column = cursorCell_ - rows_[row].begin;
    const auto last = static_cast<std::size_t>(cols_ - 1);
    if (cursor_.isWrapPending && column < last) {  // there is room behind the character now
        cursor_.isWrapPending = false;
        cursor_.x = static_cast<int>(column + 1);
    } else {
        cursor_.isWrapPending = cursor_.isWrapPending && column == last;
        cursor_.x = static_cast<int>(std::min(column, last));
    }
    cursor_.y = static_cast<int>(row);
}

}  // namespace orvane
