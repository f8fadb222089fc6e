#include "TerminalEmulator/Engine/CursorFunctions.h"

#include <algorithm>
#include <cstdint>

namespace orvane::CursorFunctions {

namespace {

/// How far a function moves: its first parameter, 1 when it has none, and no more than a screen can be wide or high.
int distance(const ParserParameters& parameters) {
    return std::min(parameters.valueOr(0, 1), Buffer::maximumSize);
}

/// A column or row from 0, of a parameter that counts from 1.
int place(const ParserParameters& parameters, std::size_t index) {
    return std::min(parameters.valueOr(index, 1), Buffer::maximumSize) - 1;
}

void moveUp(TerminalState& state, int count) {
    const Buffer& buffer = *state.buffer;
    const int limit = buffer.y() >= buffer.scrollTop() ? buffer.scrollTop() : 0;
    state.placeCursor(buffer.x(), std::max(buffer.y() - count, limit));
}

void moveDown(TerminalState& state, int count) {
    const Buffer& buffer = *state.buffer;
    const int limit = buffer.y() <= buffer.scrollBottom() ? buffer.scrollBottom() : state.rows() - 1;
    state.placeCursor(buffer.x(), std::min(buffer.y() + count, limit));
}

/// Whether the cursor, on its first column, may go on at the end of the row above.
bool wrapsBack(const TerminalState& state) {
    if (!state.modes.wraparound) return false;
    if (state.modes.extendedReverseWraparound) return true;
    return state.modes.reverseWraparound && state.buffer->line(state.buffer->y()).isWrapped();
}

/// From the region's top, and from the screen's, to its bottom; without the extended mode it stops there.
bool stepToRowAbove(TerminalState& state) {
    Buffer& buffer = *state.buffer;
    const bool isTop = buffer.y() == buffer.scrollTop() || buffer.y() == 0;
    if (isTop && !state.modes.extendedReverseWraparound) return false;
    const int above =
        isTop ? (buffer.y() == 0 && buffer.scrollTop() > 0 ? state.rows() - 1 : buffer.scrollBottom()) : buffer.y() - 1;
    state.placeCursor(state.rightMargin(), above);
    return true;
}

}  // namespace

void up(TerminalState& state, const ParserParameters& parameters) {
    moveUp(state, distance(parameters));
}

void down(TerminalState& state, const ParserParameters& parameters) {
    moveDown(state, distance(parameters));
}

void forward(TerminalState& state, const ParserParameters& parameters) {
    const Buffer& buffer = *state.buffer;
    const int limit = buffer.x() <= state.rightMargin() ? state.rightMargin() : state.cols() - 1;
    state.placeCursor(std::min(buffer.x() + distance(parameters), limit), buffer.y());
}

void back(TerminalState& state, int count) {
    Buffer& buffer = *state.buffer;
    const bool mayWrap =
        state.modes.wraparound && (state.modes.reverseWraparound || state.modes.extendedReverseWraparound);
    // The cursor stands behind the last column then, so the first step only takes back the pending wrap.
    if (mayWrap && buffer.isWrapPending) --count;
    buffer.isWrapPending = false;
    // Wrapping back over and over comes round again after a screen.
    if (mayWrap) count = std::min(count, state.cols() * state.rows());
    while (count > 0) {
        const int left = buffer.x() >= state.leftMargin() ? state.leftMargin() : 0;
        const int step = std::min(count, buffer.x() - left);
        state.placeCursor(buffer.x() - step, buffer.y());
        count -= step;
        if (count == 0 || !mayWrap || !wrapsBack(state) || !stepToRowAbove(state)) return;
        --count;
    }
}

void nextLine(TerminalState& state, const ParserParameters& parameters) {
    moveDown(state, distance(parameters));
    state.carriageReturn();
}

void previousLine(TerminalState& state, const ParserParameters& parameters) {
    moveUp(state, distance(parameters));
    state.carriageReturn();
}

void toColumn(TerminalState& state, const ParserParameters& parameters) {
    state.moveTo(place(parameters, 0), state.reportedCursor().row);
}

void toRow(TerminalState& state, const ParserParameters& parameters) {
    state.moveTo(state.reportedCursor().col, place(parameters, 0));
}

void columnsOn(TerminalState& state, const ParserParameters& parameters) {
    const auto [col, row] = state.reportedCursor();
    state.moveTo(col + distance(parameters), row);
}

void rowsOn(TerminalState& state, const ParserParameters& parameters) {
    const auto [col, row] = state.reportedCursor();
    state.moveTo(col, row + distance(parameters));
}

void toPosition(TerminalState& state, const ParserParameters& parameters) {
    state.moveTo(place(parameters, 1), place(parameters, 0));
}

void tabForward(TerminalState& state, int count) {
    Buffer& buffer = *state.buffer;
    const int last = state.lastColumn(buffer.y());
    const int limit = buffer.x() <= state.rightMargin() ? std::min(state.rightMargin(), last) : last;
    int col = buffer.x();
    for (count = std::min(count, state.cols()); count > 0 && col < limit; --count)
        col = buffer.tabStops.next(col);
    // A wrap that is pending stays so, as it does on the hardware.
    if (col != buffer.x()) state.placeCursor(std::min(col, limit), buffer.y());
}

void tabBack(TerminalState& state, int count) {
    const Buffer& buffer = *state.buffer;
    int col = buffer.x();
    for (count = std::min(count, state.cols()); count > 0 && col > 0; --count)
        col = buffer.tabStops.previous(col);
    state.placeCursor(col, buffer.y());
}

void setTab(TerminalState& state) {
    state.buffer->tabStops.set(state.buffer->x());
}

void clearTabs(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 0) state.buffer->tabStops.clear(state.buffer->x());
    if (parameters.values[0] == 3) state.buffer->tabStops.clearAll();
}

void setTabsEveryEight(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 5) state.buffer->tabStops.setup(-1, 8);
}

void setRegion(TerminalState& state, const ParserParameters& parameters) {
    Buffer& buffer = *state.buffer;
    const int top = place(parameters, 0);
    const int bottom = std::min(parameters.valueOr(1, state.rows()), state.rows()) - 1;
    if (top >= bottom) return;
    buffer.setScrollTop(top);
    buffer.setScrollBottom(bottom);
    state.moveTo(0, 0);
}

void setMarginsOrSave(TerminalState& state, const ParserParameters& parameters) {
    if (!state.modes.marginMode) {
        state.saveCursor();
        return;
    }
    Buffer& buffer = *state.buffer;
    const int left = place(parameters, 0);
    const int right = std::min(parameters.valueOr(1, state.cols()), state.cols()) - 1;
    if (left >= right) return;
    buffer.setMarginLeft(left);
    buffer.setMarginRight(right);
    state.moveTo(0, 0);
}

}  // namespace orvane::CursorFunctions
