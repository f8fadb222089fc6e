#pragma once

#include <optional>
#include <vector>

#include "TerminalEmulator/Buffer/History.h"
#include "TerminalEmulator/Buffer/ScreenRows.h"

namespace orvane {

/// A cursor that a change of width carries along with the character that it stands on.
struct ScreenCursor {
    int x = 0;
    int y = 0;
    bool isWrapPending = false;  ///< the last column has been written, the next character wraps
};

/// Lays the text of a screen out anew at another width, together with the newest row of the history when the screen
/// goes on with it. The rest of the history takes no part: it breaks its rows by itself.
class ScreenReflow {
 public:
    ScreenReflow(const ScreenRows& screen, std::optional<HistoryRow> newest, const ScreenCursor& cursor);

    void lay(int cols);

    int rowCount() const { return static_cast<int>(rows_.size()); }
    /// Takes rows without text away from the end, not the cursor's, as long as there are more than `rows`.
    void dropBlankRows(int rows);
    RowView row(int index) const;
    History::Next next(int index) const;
    /// The cursor, its `y` counted from the first row laid.
    const ScreenCursor& cursor() const { return cursor_; }

 private:
    /// A logical line: `cells_` from `begin` to `end`, of which those from `textEnd` on only have a background.
    struct Line {
        std::size_t begin = 0;
        std::size_t textEnd = 0;
        std::size_t end = 0;
        bool isWrapped = false;  ///< its first row continues a row that is not among these
        RenderLineMode renderMode = RenderLineMode::single;
        bool startsPrompt = false;  ///< one begins somewhere in it; the first row laid has the mark
    };

    struct Row {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool isWrapped = false;
        RenderLineMode renderMode = RenderLineMode::single;
        bool startsPrompt = false;
    };

    void gather(const ScreenRows& screen, int y);
    void close(Line& line) const;
    void makeRoomForCursor();
    void layLine(const Line& line);
    std::size_t rowEnd(std::size_t begin, std::size_t end) const;
    void placeCursor(std::size_t firstRow);

    std::vector<StoredCell> cells_;
    std::vector<Line> lines_;
    std::vector<Row> rows_;
    ScreenCursor cursor_;
    std::size_t cursorLine_ = 0;
    std::size_t cursorCell_ = 0;  ///< where in `cells_` it stands; may lie past the end of its line
    int cols_ = 0;
};

}  // namespace orvane
