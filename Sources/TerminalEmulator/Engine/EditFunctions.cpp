#include "TerminalEmulator/Engine/EditFunctions.h"

#include <algorithm>

namespace orvane::EditFunctions {

namespace {

using ProtectedMode = TerminalState::ProtectedMode;

int count(const ParserParameters& parameters) {
    return std::min(parameters.valueOr(0, 1), Buffer::maximumSize);
}

/// What SPA protects, plain erasing leaves; what DECSCA protects, selective erasing does.
bool sparesProtected(const TerminalState& state, Erasing erasing) {
    return state.protectedMode == (erasing == Erasing::selective ? ProtectedMode::dec : ProtectedMode::iso);
}

/// Columns [start, end) of a row. A row whose end is erased is continued by none; one that is erased whole is a row of
/// its own and single width. It keeps the mark of a prompt: shells that have marked one clear the rest of its row
/// before they write it.
void eraseInRow(TerminalState& state, int y, int start, int end, Erasing erasing) {
    BufferLine line = state.buffer->line(y);
    if (sparesProtected(state, erasing)) {
        line.eraseUnprotected(start, end, state.eraseFill());
        return;
    }
    const int cols = state.cols();
    if (start == 0 && end >= cols) {
        line.fill(state.eraseFill());
        line.setIsWrapped(false);
    } else {
        line.replaceCells(start, end, state.eraseFill());
    }
    if (end >= cols && y + 1 < state.rows()) state.buffer->line(y + 1).setIsWrapped(false);
}

void eraseRows(TerminalState& state, int top, int bottom, Erasing erasing) {
    for (int y = top; y <= bottom; ++y) {
        if (!sparesProtected(state, erasing)) {
            state.buffer->line(y).setRenderMode(RenderLineMode::single);
            state.buffer->line(y).setStartsPrompt(false);
        }
        eraseInRow(state, y, 0, state.cols(), erasing);
    }
}

enum class Shift { left, right };

/// The columns from `from` to the right margin, in each row of the region.
void shiftColumns(TerminalState& state, int from, int count, Shift shift) {
    Buffer& buffer = *state.buffer;
    for (int y = buffer.scrollTop(); y <= buffer.scrollBottom(); ++y) {
        if (shift == Shift::left) {
            buffer.line(y).deleteCells(from, count, state.rightMargin(), state.eraseFill());
        } else {
            buffer.line(y).insertCells(from, count, state.rightMargin(), state.eraseFill());
        }
    }
    buffer.isWrapPending = false;
    state.markRows(buffer.scrollTop(), buffer.scrollBottom());
}

}  // namespace

void eraseInDisplay(TerminalState& state, const ParserParameters& parameters, Erasing erasing) {
    Buffer& buffer = *state.buffer;
    const int y = buffer.y();
    const int last = state.rows() - 1;
    switch (parameters.values[0]) {
        case 0:
            if (buffer.x() == 0) state.buffer->line(y).setRenderMode(RenderLineMode::single);
            eraseInRow(state, y, buffer.x(), state.cols(), erasing);
            eraseRows(state, y + 1, last, erasing);
            state.markRows(y, last);
            break;
        case 1:
            eraseRows(state, 0, y - 1, erasing);
            eraseInRow(state, y, 0, buffer.x() + 1, erasing);
            state.markRows(0, y);
            break;
        case 2:
            eraseRows(state, 0, last, erasing);
            state.markAll();
            break;
        case 3:
            if (erasing == Erasing::selective) return;
            buffer.clearHistory();
            state.markAll();
            return;
        default:
            return;
    }
    buffer.isWrapPending = false;
}

void eraseInLine(TerminalState& state, const ParserParameters& parameters, Erasing erasing) {
    Buffer& buffer = *state.buffer;
    switch (parameters.values[0]) {
        case 0:
            eraseInRow(state, buffer.y(), buffer.x(), state.cols(), erasing);
            break;
        case 1:
            eraseInRow(state, buffer.y(), 0, buffer.x() + 1, erasing);
            break;
        case 2:
            if (!sparesProtected(state, erasing)) state.cursorLine().setStartsPrompt(false);
            eraseInRow(state, buffer.y(), 0, state.cols(), erasing);
            break;
        default:
            return;
    }
    buffer.isWrapPending = false;
    state.markRow(buffer.y());
}

void eraseCharacters(TerminalState& state, const ParserParameters& parameters) {
    Buffer& buffer = *state.buffer;
    const int end = std::min(buffer.x() + count(parameters), state.cols());
    eraseInRow(state, buffer.y(), buffer.x(), end, Erasing::plain);
    buffer.isWrapPending = false;
    state.markRow(buffer.y());
}

void insertCharacters(TerminalState& state, const ParserParameters& parameters) {
    Buffer& buffer = *state.buffer;
    buffer.isWrapPending = false;
    if (!state.isCursorInColumns()) return;
    state.cursorLine().insertCells(buffer.x(), count(parameters), state.rightMargin(), state.eraseFill());
    state.markRow(buffer.y());
}

void deleteCharacters(TerminalState& state, const ParserParameters& parameters) {
    Buffer& buffer = *state.buffer;
    buffer.isWrapPending = false;
    if (!state.isCursorInColumns()) return;
    state.cursorLine().deleteCells(buffer.x(), count(parameters), state.rightMargin(), state.eraseFill());
    state.markRow(buffer.y());
}

void insertLines(TerminalState& state, const ParserParameters& parameters) {
    if (!state.isCursorInMargins()) return;
    state.insertLines(state.buffer->y(), count(parameters));
    state.placeCursor(state.leftMargin(), state.buffer->y());
}

void deleteLines(TerminalState& state, const ParserParameters& parameters) {
    if (!state.isCursorInMargins()) return;
    state.deleteLines(state.buffer->y(), count(parameters));
    state.placeCursor(state.leftMargin(), state.buffer->y());
}

void scrollUp(TerminalState& state, const ParserParameters& parameters) {
    state.scrollUp(count(parameters));
    state.buffer->isWrapPending = false;
}

void scrollDown(TerminalState& state, const ParserParameters& parameters) {
    state.scrollDown(count(parameters));
    state.buffer->isWrapPending = false;
}

void shiftLeft(TerminalState& state, const ParserParameters& parameters) {
    if (state.isCursorInMargins()) shiftColumns(state, state.leftMargin(), count(parameters), Shift::left);
}

void shiftRight(TerminalState& state, const ParserParameters& parameters) {
    if (state.isCursorInMargins()) shiftColumns(state, state.leftMargin(), count(parameters), Shift::right);
}

void insertColumns(TerminalState& state, const ParserParameters& parameters) {
    if (state.isCursorInMargins()) shiftColumns(state, state.buffer->x(), count(parameters), Shift::right);
}

void deleteColumns(TerminalState& state, const ParserParameters& parameters) {
    if (state.isCursorInMargins()) shiftColumns(state, state.buffer->x(), count(parameters), Shift::left);
}

void forwardIndex(TerminalState& state) {
    const Buffer& buffer = *state.buffer;
    if (buffer.x() == state.rightMargin()) {
        if (state.isCursorInMargins()) shiftColumns(state, state.leftMargin(), 1, Shift::left);
    } else {
        state.placeCursor(buffer.x() + 1, buffer.y());
    }
}

void backIndex(TerminalState& state) {
    const Buffer& buffer = *state.buffer;
    if (buffer.x() == state.leftMargin()) {
        if (state.isCursorInMargins()) shiftColumns(state, state.leftMargin(), 1, Shift::right);
    } else {
        state.placeCursor(buffer.x() - 1, buffer.y());
    }
}

void alignmentPattern(TerminalState& state) {
    Buffer& buffer = *state.buffer;
    buffer.setScrollTop(0);
    buffer.setScrollBottom(state.rows() - 1);
    buffer.setMarginLeft(0);
    buffer.setMarginRight(state.cols() - 1);
    state.modes.originMode = false;
    for (int y = 0; y < state.rows(); ++y) {
        BufferLine line = buffer.line(y);
        line.setRenderMode(RenderLineMode::single);
        line.setIsWrapped(false);
        line.setStartsPrompt(false);
        line.fill(StoredCell{}.with('E', 1));
    }
    state.placeCursor(0, 0);
    state.markAll();
}

void setRenderMode(TerminalState& state, RenderLineMode mode) {
    Buffer& buffer = *state.buffer;
    state.cursorLine().setRenderMode(mode);
    state.hasDoubledRows |= mode != RenderLineMode::single;
    if (buffer.x() > state.lastColumn(buffer.y())) state.placeCursor(buffer.x(), buffer.y());
    state.markRow(buffer.y());
}

}  // namespace orvane::EditFunctions
