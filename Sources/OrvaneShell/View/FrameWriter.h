#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/FrameBytes.h"
#include "OrvaneShell/View/FrameCells.h"
#include "OrvaneShell/View/OuterTerminal.h"
#include "OrvaneShell/View/RowScroll.h"

namespace orvane {

/// Makes the bytes that turn what a client's terminal shows into the next frame. The terminal must have autowrap off,
/// no margins, and nobody else may write to it without `invalidate`.
class FrameWriter {
 public:
    explicit FrameWriter(const OuterTerminal& features);

    /// The next frame is drawn whole when they differ.
    void setFeatures(const OuterTerminal& features);

    /// The bytes that make the terminal show the canvas; empty when it shows it already. Counts on all earlier frames
    /// to arrive.
    std::string frame(const Canvas& next);

    /// The terminal shows something unknown: the next frame begins with a clear and is drawn whole.
    void invalidate() { isKnown_ = false; }

 private:
    enum class CursorState : std::uint8_t { unknown, hidden, shown };

    std::span<StoredCell> rowOf(std::vector<StoredCell>& cells, int y) const;
    int findChanged(const Canvas& next);
    void scroll(const Canvas& next);
    void moveRows(const RowScroll& scroll);
    void startOver(const Canvas& next);
    void drawRow(const Canvas& next, int y);
    void drawCells(int y);
    int drawBlanks(int x, int y, int end);
    void drawCell(int x, int y);
    void moveTo(int x, int y);
    bool crossesByWriting(int x);
    int lastChanged(int start, int end, int y);
    void placeCursor(const std::optional<Canvas::Cursor>& cursor);
    std::string wrapped(const Canvas& next);

    OuterTerminal features_;
    FrameCells cells_;
    FrameBytes out_;
    bool isKnown_ = false;
    int cols_ = 0;
    int rows_ = 0;
    std::vector<StoredCell> drawn_;  ///< rows as the last canvas had them: what is equal to them needs no second look
    std::vector<FrameCells::Content> contents_;  ///< of those rows
    std::vector<std::uint8_t> isChanged_;        ///< rows of the frame that is being made
    std::vector<RowPrint> before_;
    std::vector<RowPrint> after_;
    std::vector<StoredCell> shown_;  ///< what the terminal shows
    std::vector<StoredCell> row_;    ///< the row that is being drawn
    int disturbed_ = 0;              ///< the column in it that a character before it may have run over; -1 for none
    CursorState cursorState_ = CursorState::unknown;
    std::optional<CursorStyle> cursorStyle_;
};

}  // namespace orvane
