#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/CellRect.h"

namespace orvane {

class Terminal;

/// A line of a screen as it is read out: without lines, blocks and blanks at its end.
struct PlainRow {
    /// Its place; in a count that goes on while rows scroll away, where the screen has one.
    std::int64_t number = 0;
    std::string text;
    /// The same with "> " before each part that is drawn inverse, which is how choices look; empty when there is none.
    std::string marked = {};

    bool operator==(const PlainRow&) const = default;
};

/// What somebody reads who does not see the screen.
struct PlainScreen {
    std::vector<PlainRow> rows;
    bool isNumbered = false;  ///< a row that scrolls keeps its number
    std::int64_t top = 0;     ///< the number of the first row of the screen; what comes before is history
    /// The row of the cursor when that stands behind its last character; its text goes up to the cursor.
    std::optional<std::size_t> cursorRow;
    /// Rows that had scrolled away too long ago.
    std::int64_t lost = 0;

    /// Most rows of the history that one screen comes with.
    static constexpr std::int64_t mostScrolled = 2000;

    /// The screen of a program, wrapped rows joined. With the rows from number `from` on that have scrolled away.
    static PlainScreen of(const Terminal& terminal, std::optional<std::int64_t> from);
    /// Part of a canvas.
    static PlainScreen of(const Canvas& canvas, const CellRect& area);

    bool operator==(const PlainScreen&) const = default;
};

/// Without what only draws, and without blanks at the end.
std::string withoutDecoration(std::string_view text);

}  // namespace orvane
