// Sizes of a buffer: the rows that come and go with its height, the text that is laid out anew with its width.

#include <algorithm>
#include <utility>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"

namespace orvane {

void Buffer::resize(int newCols, int newRows) {
    newCols = std::clamp(newCols, minimumCols, maximumSize);
    newRows = std::clamp(newRows, minimumRows, maximumSize);
    marginRight_ = std::min(marginRight_, newCols - 1);
    marginLeft_ = std::min(marginLeft_, marginRight_);
    if (screen_.count() > 0) {
        if (newRows > rows_) addRows(newRows);
        if (newRows < rows_) removeRows(newRows);
        scrollTop_ = 0;
    }
    scrollBottom_ = newRows - 1;
    tabStops.resize(newCols);
    rows_ = newRows;
    if (newCols != cols_) {
        if (screen_.count() == 0) {
            history_.setColumns(newCols);
        } else if (hasScrollback()) {
            reflow(newCols);
        } else {
            cutToWidth(newCols);
        }
        cols_ = newCols;
    }
    setX(x_);
    setY(y_);
    saved.x = std::min(saved.x, newCols - 1);
    saved.y = std::min(saved.y, newRows - 1);
    changeHistorySize(scrollback_);
}

void Buffer::changeHistorySize(std::optional<int> scrollback) {
    scrollback_ = scrollback;
    history_.setRowLimit(rowLimit());
    afterHistoryCut();
}

std::uint64_t Buffer::rowLimit() const {
    return static_cast<std::uint64_t>(std::clamp(scrollback_.value_or(0), 0, maximumCapacity - rows_));
}

/// Rows come out of the history for a cursor in the last row, so that it keeps its distance from the end, and blank
/// ones at the bottom else.
void Buffer::addRows(int newRows) {
    const bool follows = yDisp_ == yBase();
    std::vector<HistoryRow> above;
    if (y_ == rows_ - 1) {
        while (rows_ + static_cast<int>(above.size()) < newRows && yBase() > 0)
            above.push_back(history_.takeNewest());
        std::ranges::reverse(above);
    }
    moveScreen(cols_, newRows, 0, above);
    y_ += static_cast<int>(above.size());
    if (follows) yDisp_ = yBase();
    afterHistoryCut();
}

/// Rows below the cursor go first, then the top rows go into the history.
void Buffer::removeRows(int newRows) {
    const bool follows = yDisp_ == yBase();
    const int pushed = std::max(0, y_ + 1 - newRows);
    for (int count = 0; count < pushed; ++count) {
        rememberTop(nextOfTopRow(rows_ - 1, NewRow::startsLine));
        screen_.rotateUp(0, rows_ - 1, {});
    }
    if (follows) yDisp_ = yBase();
    y_ -= pushed;
    moveScreen(cols_, newRows, 0, {});
}

/// Carries rows from `skipped` on into a screen of another size, below those of `above`.
void Buffer::moveScreen(int cols, int rows, int skipped, std::span<const HistoryRow> above) {
    const ScreenRows old = std::exchange(screen_, ScreenRows(cols, rows, generations_));
    int y = 0;
    for (const HistoryRow& row : above) {
        screen_.line(y++).copyFrom(RowView{.cells = row.cells,
                                           .cols = cols,
                                           .isWrapped = row.isWrapped,
                                           .renderMode = row.renderMode,
                                           .startsPrompt = row.startsPrompt});
    }
    for (int from = skipped; from < old.count() && y < rows; ++from)
        screen_.line(y++).copyFrom(old.view(from));
}

/// The alternate screen is cut, not laid out anew: its program draws it again.
void Buffer::cutToWidth(int newCols) {
    moveScreen(newCols, screen_.count(), 0, {});
    history_.setColumns(newCols);
    isWrapPending = false;
}

void Buffer::reflow(int newCols) {
    const bool narrows = newCols < cols_;
    const bool follows = yDisp_ == yBase();
    const bool hadHistory = yBase() > 0;
    const int rowsBefore = count();
    const std::uint64_t frontBefore = history_.frontRow();
    history_.setColumns(newCols);
    std::optional<HistoryRow> newest;
    if (screen_.row(0).isWrapped && yBase() > 0) newest = history_.takeNewest();
    ScreenReflow laid(screen_, std::move(newest), {.x = x_, .y = y_, .isWrapPending = isWrapPending});
    laid.lay(newCols);
    if (narrows && !hadHistory) laid.dropBlankRows(rows_);
    const int removed = rowsBefore - yBase() - laid.rowCount();
    replaceScreen(laid, newCols);
    history_.setRowLimit(rowLimit());
    const std::uint64_t dropped = history_.frontRow() - frontBefore;
    // The saved cursor moves with the number of rows, not with a character.
    const std::int64_t lost = static_cast<std::int64_t>(dropped) + std::max(0, removed);
    saved.y = static_cast<int>(std::max<std::int64_t>(0, saved.y - lost));
    if (follows)
        yDisp_ = yBase();
    else
        yDisp_ = static_cast<int>(std::max<std::int64_t>(0, yDisp_ - static_cast<std::int64_t>(dropped)));
    afterHistoryCut();
}

/// The last rows are the screen. Those above go into the history, or some come out of it; what is missing then is
/// blank.
void Buffer::replaceScreen(const ScreenReflow& laid, int newCols) {
    const int pushed = std::max(0, laid.rowCount() - rows_);
    for (int index = 0; index < pushed; ++index)
        history_.append(laid.row(index), laid.next(index));
    std::vector<HistoryRow> above;
    while (laid.rowCount() + static_cast<int>(above.size()) < rows_ && yBase() > 0) {
        above.push_back(history_.takeNewest());
    }
    std::ranges::reverse(above);
    screen_ = ScreenRows();
    moveScreen(newCols, rows_, 0, above);
    int y = static_cast<int>(above.size());
    for (int index = pushed; index < laid.rowCount(); ++index)
        screen_.line(y++).copyFrom(laid.row(index));
    x_ = laid.cursor().x;
    y_ = std::max(0, laid.cursor().y - pushed + static_cast<int>(above.size()));
    isWrapPending = laid.cursor().isWrapPending;
}

void Buffer::afterHistoryCut() {
    yDisp_ = std::clamp(yDisp_, 0, yBase());
}

}  // namespace orvane
