#include "TerminalEmulator/SelectionService.h"

#include <algorithm>
#include <limits>

#include "TerminalEmulator/LogicalLine.h"
#include "TerminalEmulator/Selection/WordBoundary.h"

namespace orvane {
namespace {

/// The rectangle that has both ranges as corners.
SelectionRange blockOf(const SelectionRange& a, const SelectionRange& b) {
    return {{std::min(a.start.row, b.start.row), std::min(a.start.col, b.start.col)},
            {std::max(a.end.row, b.end.row), std::max(a.end.col, b.end.col)}};
}

SelectionRange joined(const SelectionRange& a, const SelectionRange& b) {
    return {std::min(a.start, b.start), std::max(a.end, b.end)};
}

Position clipped(Position at, SelectionMode mode) {
    if (at.row >= 0) return at;
    return {0, mode == SelectionMode::block ? at.col : 0};
}

SelectionRange shifted(const SelectionRange& range, int rows, SelectionMode mode) {
    return {clipped({range.start.row - rows, range.start.col}, mode),
            clipped({range.end.row - rows, range.end.col}, mode)};
}

}  // namespace

void SelectionService::setBuffer(const Buffer& buffer) {
    buffer_ = &buffer;
    change(std::nullopt);
}

void SelectionService::bufferChanged() {
    change(current());
}

void SelectionService::rowsMoved(int top, int bottom, int by) {
    std::optional<State> state = current();
    if (!state || state->range.end.row < top || state->range.start.row > bottom) return;
    by = std::clamp(by, top - bottom - 1, bottom - top + 1);
    const int firstRow = state->range.start.row - by;
    const int lastRow = state->range.end.row - by;
    const bool isPartly = state->range.start.row < top || state->range.end.row > bottom;
    if (isPartly || firstRow > bottom || lastRow < top) {
        change(std::nullopt);
        return;
    }
    const auto move = [&](Position& at) {
        at.row -= by;
        const bool isBlock = state->mode == SelectionMode::block;
        if (at.row < top) at = {top, isBlock ? at.col : 0};
        if (at.row > bottom) at = {bottom, isBlock ? at.col : buffer_->cols()};
    };
    for (Position* at :
         {&state->range.start, &state->range.end, &state->anchor.start, &state->anchor.end, &state->pivot})
        move(*at);
    change(state);
}

void SelectionService::startSelection(Position at, SelectionMode mode) {
    if (buffer_->count() == 0) return;
    change(stateAt(clamped(at), mode));
}

void SelectionService::extend(Position to) {
    std::optional<State> state = current();
    if (!state) {
        startSelection(to, SelectionMode::character);
        return;
    }
    const SelectionRange unit = unitAt(clamped(to), state->mode);
    state->range = state->mode == SelectionMode::block ? blockOf(state->anchor, unit) : joined(state->anchor, unit);
    change(state);
}

void SelectionService::selectAll() {
    int last = buffer_->count() - 1;
    while (last >= 0 && buffer_->row(last).getTrimmedLength() == 0)
        --last;
    if (last < 0) {
        change(std::nullopt);
        return;
    }
    State state = stateAt({}, SelectionMode::character);
    state.range = {{}, {last, buffer_->cols()}};
    change(state);
}

void SelectionService::clear() {
    change(std::nullopt);
}

bool SelectionService::hasSelection() const {
    return !range().isEmpty();
}

SelectionMode SelectionService::mode() const {
    return state_ ? state_->mode : SelectionMode::character;
}

SelectionRange SelectionService::range() const {
    const std::optional<State> state = current();
    return state ? state->range : SelectionRange{};
}

std::optional<Position> SelectionService::pivot() const {
    const std::optional<State> state = current();
    return state ? std::optional(state->pivot) : std::nullopt;
}

std::optional<SelectionRange> SelectionService::wordSelectionAnchor() const {
    const std::optional<State> state = current();
    return state && state->mode == SelectionMode::word ? std::optional(state->anchor) : std::nullopt;
}

bool SelectionService::isSelected(Position cell) const {
    const std::optional<ColumnRange> cols = selectedCols(cell.row);
    return cols && cols->contains(cell.col);
}

std::optional<ColumnRange> SelectionService::selectedCols(int row) const {
    const std::optional<State> state = current();
    return state ? selectedCols(*state, row) : std::nullopt;
}

std::string SelectionService::selectedText() const {
    const std::optional<State> state = current();
    std::string text;
    if (!state || state->range.isEmpty()) return text;
    const int lastRow = std::min(state->range.end.row, buffer_->count() - 1);
    for (int row = state->range.start.row; row <= lastRow; ++row) {
        const int textEnd = LogicalLine::textColsWithoutBlanks(*buffer_, row);
        if (const auto cols = selectedCols(*state, row)) {
            LogicalLine::appendCells(buffer_->row(row), cols->startCol, std::min(cols->endCol, textEnd), clusters_,
                                     text);
        }
        const bool endsRow = state->mode == SelectionMode::block || !LogicalLine::continuesBelow(*buffer_, row);
        if (endsRow && row < lastRow) text += '\n';
    }
    return text;
}

/// The selection in the rows that the ring has now.
std::optional<SelectionService::State> SelectionService::current() const {
    if (!state_ || state_->cols != buffer_->cols() || state_->rows != buffer_->rows()) return std::nullopt;
    // A cleared buffer counts from 0 again.
    if (buffer_->linesTop() < state_->linesTop || buffer_->count() == 0) return std::nullopt;
    const std::uint64_t fallen = buffer_->linesTop() - state_->linesTop;
    if (fallen > static_cast<std::uint64_t>(state_->range.end.row)) return std::nullopt;
    State state = *state_;
    const int rows = static_cast<int>(fallen);
    state.range = shifted(state.range, rows, state.mode);
    state.anchor = shifted(state.anchor, rows, state.mode);
    state.pivot = clipped({state.pivot.row - rows, state.pivot.col}, state.mode);
    state.linesTop = buffer_->linesTop();
    return state;
}

SelectionService::State SelectionService::stateAt(Position at, SelectionMode mode) const {
    at.col = LogicalLine::characterCol(buffer_->row(at.row), at.col);
    State state{.anchor = unitAt(at, mode),
                .pivot = at,
                .mode = mode,
                .linesTop = buffer_->linesTop(),
                .cols = buffer_->cols(),
                .rows = buffer_->rows()};
    const bool selectsAtOnce = mode == SelectionMode::word || mode == SelectionMode::row;
    state.range = selectsAtOnce ? state.anchor : SelectionRange{at, at};
    return state;
}

Position SelectionService::clamped(Position at) const {
    return {std::clamp(at.row, 0, buffer_->count() - 1), std::clamp(at.col, 0, buffer_->cols() - 1)};
}

/// What is selected at a cell at least.
SelectionRange SelectionService::unitAt(Position at, SelectionMode mode) const {
    constexpr int allRows = std::numeric_limits<int>::max();
    switch (mode) {
        case SelectionMode::word:
            return wordAt(*buffer_, clusters_, at);
        case SelectionMode::row:
            return {{LogicalLine::firstRow(*buffer_, at.row, allRows), 0},
                    {LogicalLine::lastRow(*buffer_, at.row, allRows), buffer_->cols()}};
        case SelectionMode::character:
        case SelectionMode::block:
            break;
    }
    const RowView row = buffer_->row(at.row);
    const int col = LogicalLine::characterCol(row, at.col);
    return {{at.row, col}, {at.row, LogicalLine::colBehindCharacter(row, col)}};
}

void SelectionService::change(std::optional<State> state) {
    state_ = state;
    const Announced now = announcementOf(state);
    if (now == announced_) return;
    announced_ = now;
    const std::function<void()> call = onChange;
    if (call) call();
}

SelectionService::Announced SelectionService::announcementOf(const std::optional<State>& state) {
    if (!state || state->range.isEmpty()) return {};
    const auto top = static_cast<std::int64_t>(state->linesTop);
    const auto& [start, end] = state->range;
    return {.startRow = top + start.row,
            .endRow = top + end.row,
            .startCol = start.col,
            .endCol = end.col,
            .isBlock = state->mode == SelectionMode::block};
}

/// Whole characters of what the row holds now: it may have changed since it was selected.
std::optional<ColumnRange> SelectionService::selectedCols(const State& state, int row) const {
    const auto& [start, end] = state.range;
    if (row < start.row || row > end.row || state.range.isEmpty()) return std::nullopt;
    const bool isBlock = state.mode == SelectionMode::block;
    const int startCol = isBlock || row == start.row ? start.col : 0;
    const int endCol = isBlock || row == end.row ? end.col : buffer_->cols();
    if (startCol >= endCol) return std::nullopt;
    const RowView view = buffer_->row(row);
    const int lastCol = LogicalLine::characterCol(view, endCol - 1);
    return ColumnRange{LogicalLine::characterCol(view, startCol), LogicalLine::colBehindCharacter(view, lastCol)};
}

}  // namespace orvane
