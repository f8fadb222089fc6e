#include "OrvaneShell/View/Overlays/CopyCursor.h"

#include <algorithm>

#include "TerminalEmulator/LogicalLine.h"
#include "TerminalEmulator/Selection/TextMotion.h"

namespace orvane {

namespace {

using Words = TextMotion::Words;

Position target(const TextMotion& text, CopyMotion motion, Position at) {
    switch (motion) {
        case CopyMotion::left:
            return text.left(at);
        case CopyMotion::right:
            return text.right(at);
        case CopyMotion::wordForward:
            return text.wordForward(at, Words::plain);
        case CopyMotion::wordEnd:
            return text.wordEnd(at, Words::plain);
        case CopyMotion::wordBack:
            return text.wordBack(at, Words::plain);
        case CopyMotion::longWordForward:
            return text.wordForward(at, Words::betweenBlanks);
        case CopyMotion::longWordEnd:
            return text.wordEnd(at, Words::betweenBlanks);
        case CopyMotion::longWordBack:
            return text.wordBack(at, Words::betweenBlanks);
        case CopyMotion::lineStart:
            return text.lineStart(at);
        case CopyMotion::lineText:
            return text.lineText(at);
        case CopyMotion::lineEnd:
            return text.lineEnd(at);
        case CopyMotion::oldest:
            return {};
        case CopyMotion::newest:
            return {.row = text.lastTextRow()};
        case CopyMotion::paragraphUp:
            return text.paragraphUp(at);
        case CopyMotion::paragraphDown:
            return text.paragraphDown(at);
        default:
            return at;
    }
}

/// Sideways without regard to what the row holds, as a block is marked.
Position sideways(const Terminal& terminal, CopyMotion motion, Position at) {
    at.col = std::clamp(at.col + (motion == CopyMotion::left ? -1 : 1), 0, terminal.cols() - 1);
    return at;
}

}  // namespace

CopyCursor::CopyCursor(const Terminal& terminal) {
    const Buffer& buffer = terminal.buffer();
    const int last = terminal.getTopVisibleRow() + terminal.rows() - 1;
    const Position own{.row = buffer.yBase() + buffer.y(), .col = buffer.x()};
    remember(terminal, own.row <= last ? own : Position{.row = last});
    wishedCol_ = col_;
}

Position CopyCursor::at(const Terminal& terminal) const {
    const Buffer& buffer = terminal.buffer();
    const std::int64_t row = row_ - static_cast<std::int64_t>(buffer.linesTop());
    Position at{.row = static_cast<int>(std::clamp<std::int64_t>(row, 0, std::max(0, buffer.count() - 1)))};
    at.col = LogicalLine::characterCol(buffer.row(at.row), std::clamp(col_, 0, terminal.cols() - 1));
    return at;
}

void CopyCursor::remember(const Terminal& terminal, Position at) {
    row_ = static_cast<std::int64_t>(terminal.buffer().linesTop()) + at.row;
    col_ = at.col;
}

void CopyCursor::place(Terminal& terminal, Position at) {
    remember(terminal, at);
    wishedCol_ = at.col;
    reveal(terminal);
}

void CopyCursor::reveal(Terminal& terminal) {
    const int row = at(terminal).row;
    const int top = terminal.getTopVisibleRow();
    if (row < top) terminal.scrollTo(row);
    if (row >= top + terminal.rows()) terminal.scrollTo(row - terminal.rows() + 1);
}

void CopyCursor::jump(Terminal& terminal, Position at, Sight sight) {
    const int top = terminal.getTopVisibleRow();
    const bool isInSight = at.row >= top && at.row < top + terminal.rows();
    if (!isInSight) terminal.scrollTo(sight == Sight::top ? at.row : at.row - terminal.rows() / 2);
    place(terminal, at);
}

void CopyCursor::move(Terminal& terminal, CopyMotion motion, Columns columns) {
    if (moveRows(terminal, motion, columns)) return;
    const bool isSideways = motion == CopyMotion::left || motion == CopyMotion::right;
    const TextMotion text(terminal.buffer(), terminal.clusters());
    place(terminal, isSideways && columns == Columns::all ? sideways(terminal, motion, at(terminal))
                                                          : target(text, motion, at(terminal)));
}

/// Motions that keep the column as well as the text allows; whether it was one.
bool CopyCursor::moveRows(Terminal& terminal, CopyMotion motion, Columns columns) {
    const int top = terminal.getTopVisibleRow();
    const int rows = terminal.rows();
    const int screen = std::max(1, rows - 1);
    switch (motion) {
        case CopyMotion::up:
            toRow(terminal, at(terminal).row - 1, columns);
            return true;
        case CopyMotion::down:
            toRow(terminal, at(terminal).row + 1, columns);
            return true;
        case CopyMotion::top:
            toRow(terminal, top, columns);
            return true;
        case CopyMotion::middle:
            toRow(terminal, top + rows / 2, columns);
            return true;
        case CopyMotion::bottom:
            toRow(terminal, top + rows - 1, columns);
            return true;
        case CopyMotion::pageUp:
        case CopyMotion::pageDown:
            page(terminal, motion == CopyMotion::pageUp ? -screen : screen, columns);
            return true;
        case CopyMotion::halfPageUp:
        case CopyMotion::halfPageDown:
            page(terminal, std::max(1, rows / 2) * (motion == CopyMotion::halfPageUp ? -1 : 1), columns);
            return true;
        case CopyMotion::scrollUp:
        case CopyMotion::scrollDown:
            scroll(terminal, motion == CopyMotion::scrollUp ? -1 : 1, columns);
            return true;
        default:
            return false;
    }
}

void CopyCursor::toRow(Terminal& terminal, int row, Columns columns) {
    row = std::clamp(row, 0, std::max(0, terminal.buffer().count() - 1));
    const TextMotion text(terminal.buffer(), terminal.clusters());
    const int col = columns == Columns::all ? wishedCol_ : std::min(wishedCol_, text.lastCol(row));
    remember(terminal, {row, col});
    reveal(terminal);
}

/// The view moves and the cursor keeps its place in it; at an end of the text it goes to that end.
void CopyCursor::page(Terminal& terminal, int rows, Columns columns) {
    const int top = terminal.getTopVisibleRow();
    const int row = at(terminal).row;
    terminal.scrollTo(top + rows);
    const int moved = terminal.getTopVisibleRow() - top;
    const TextMotion text(terminal.buffer(), terminal.clusters());
    const int end = rows < 0 ? 0 : std::max(row, text.lastTextRow());
    toRow(terminal, moved == 0 ? end : row + moved, columns);
}

void CopyCursor::scroll(Terminal& terminal, int rows, Columns columns) {
    terminal.scrollTo(terminal.getTopVisibleRow() + rows);
    const int top = terminal.getTopVisibleRow();
    const int row = at(terminal).row;
    const int inSight = std::clamp(row, top, top + terminal.rows() - 1);
    if (inSight != row) toRow(terminal, inSight, columns);
}

}  // namespace orvane
