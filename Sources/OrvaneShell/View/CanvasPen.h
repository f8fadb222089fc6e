#pragma once

#include <climits>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/TextCells.h"
#include "TerminalEmulator/Buffer/Attribute.h"
#include "TerminalEmulator/Buffer/RowView.h"

namespace orvane {

class Terminal;

/// Draws into a part of a canvas and nowhere else, in the looks that the canvas's theme makes of those that are asked
/// for. All places are those of the canvas, `area` only clips. A wide
/// character is never cut: a half that lost the other one, inside or beside what was drawn, becomes a blank.
class CanvasPen {
 public:
    /// The canvas must outlive the pen and keep its size.
    CanvasPen(Canvas& canvas, const CellRect& area);

    /// Text of one line, without its control characters, in at most `limit` columns and never past the area: "…" ends
    /// what is longer. Returns the columns used, also those left of the area.
    int text(int x, int y, std::string_view text, const Attribute& look, int limit = INT_MAX);

    /// A character that has no column of its own leaves the cells empty.
    void fill(const CellRect& rect, const Attribute& look, char32_t character = ' ');

    /// Changes looks and keeps characters and links, to show a selection or to dim what is behind a dialog. `change`
    /// is asked once for cells in a row that look the same.
    void restyle(const CellRect& rect, const std::function<Attribute(Attribute)>& change);

    /// The rows that a terminal's view shows, with its colours as they are; reverse video swaps them. Rows drawn double
    /// are spaced out, and what the terminal does not reach is blank.
    void terminal(const CellRect& rect, const Terminal& terminal);

 private:
    /// A row of cells whose first stands in column `x` of the canvas.
    struct Source {
        std::span<const StoredCell> cells;
        int x = 0;
        std::uint32_t flipped = 0;  ///< bits of `text` that change
    };

    void put(int x, int y, const TextCell& character, const StoredCell& look);
    void cutEdges(int y, int start, int end);
    void copy(const CellRect& clip, int y, const Source& source);

    Canvas& canvas_;
    CellRect area_;
};

}  // namespace orvane
