#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/ColumnRange.h"
#include "TerminalEmulator/Selection/SelectionRange.h"

namespace orvane {

/// What the user has selected in a buffer. On the thread of the buffer only.
///
/// The selection moves with its rows when the buffer scrolls them into the history: every reading takes that into
/// account at once. What falls off the oldest end is no longer selected; a change of size and `Buffer::clear` end the
/// selection. Half a wide character is never selected.
class SelectionService {
 public:
    /// Called whenever other cells are selected than before, last of all in the call that changed it.
    std::function<void()> onChange;

    /// Both must outlive the service.
    SelectionService(const Buffer& buffer, const ClusterTable& clusters) : buffer_(&buffer), clusters_(clusters) {}

    /// Works on another buffer from now on, with nothing selected.
    void setBuffer(const Buffer& buffer);
    /// To be called after the buffer has changed, for the sake of `onChange`.
    void bufferChanged();
    /// To be called when rows of the ring have moved within it: those from `top` to `bottom` went up by `by` rows, or
    /// down when that is negative, as a scroll region or a screen without history makes them. The selection goes with
    /// them as far as they stay between the two; one that is only partly among them ends.
    void rowsMoved(int top, int bottom, int by);

    // Positions are cells, clamped to the buffer.

    /// Begins at a cell. By character and as a block nothing is selected yet; by word and by row the word or the line
    /// is.
    void startSelection(Position at, SelectionMode mode);
    /// Selects from where the selection began up to the cell, both included and rounded to whole words or lines.
    /// Without a selection it begins there, by character.
    void extend(Position to);
    /// All rows down to the last one with a character.
    void selectAll();
    void clear();

    bool hasSelection() const;
    SelectionMode mode() const;  ///< of the selection that was started last
    /// The first selected cell and, in its row, the column behind the last one; of a block its corners. Equal when
    /// nothing is selected.
    Position start() const { return range().start; }
    Position end() const { return range().end; }
    SelectionRange range() const;
    std::optional<Position> pivot() const;                      ///< the cell where the selection began
    std::optional<SelectionRange> wordSelectionAnchor() const;  ///< the word where a selection by word began

    bool isSelected(Position cell) const;
    /// The selected columns of a row.
    std::optional<ColumnRange> selectedCols(int row) const;
    /// Rows joined by wrapping stand without a line feed between them; blanks at the end of a line are left out. The
    /// rows of a block always end with line feeds, but for the last.
    std::string selectedText() const;

 private:
    struct State {
        SelectionRange range;
        SelectionRange anchor;  ///< the cell, word or line where it began
        Position pivot;
        SelectionMode mode = SelectionMode::character;
        // Of the buffer, when the rows above were those of the ring.
        std::uint64_t linesTop = 0;
        int cols = 0;
        int rows = 0;
    };

    /// What `onChange` was last called for. Rows count from the oldest that ever was, so scrolling changes nothing.
    struct Announced {
        std::int64_t startRow = 0;
        std::int64_t endRow = 0;
        int startCol = 0;
        int endCol = 0;
        bool isBlock = false;
        bool operator==(const Announced&) const = default;
    };

    std::optional<State> current() const;
    static Announced announcementOf(const std::optional<State>& state);
    State stateAt(Position at, SelectionMode mode) const;
    Position clamped(Position at) const;
    SelectionRange unitAt(Position at, SelectionMode mode) const;
    void change(std::optional<State> state);
    std::optional<ColumnRange> selectedCols(const State& state, int row) const;

    const Buffer* buffer_;
    const ClusterTable& clusters_;
    std::optional<State> state_;
    Announced announced_;
};

}  // namespace orvane
