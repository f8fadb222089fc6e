#pragma once

#include <optional>
#include <span>
#include <vector>

#include "OrvaneShell/View/ViewTheme.h"
#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/StoredCell.h"
#include "TerminalEmulator/TerminalOptions.h"

namespace orvane {

/// What a frame shows: cells and a cursor. Codes of clusters are handles of the canvas's own table; the payload is the
/// handle of a hyperlink that its terminal holds while the frame is drawn and written.
class Canvas {
 public:
    struct Cursor {
        int x = 0;
        int y = 0;
        CursorStyle style = CursorStyle::blinkBlock;

        bool operator==(const Cursor&) const = default;
    };

    /// Negative sizes count as 0.
    Canvas(int cols, int rows);

    int cols() const { return cols_; }
    int rows() const { return rows_; }
    void resize(int cols, int rows);  ///< blank afterwards
    /// All cells default blanks, no cursor.
    void clear();

    std::span<StoredCell> row(int y) { return std::span(cells_).subspan(start(y), static_cast<std::size_t>(cols_)); }
    std::span<const StoredCell> row(int y) const {
        return std::span(cells_).subspan(start(y), static_cast<std::size_t>(cols_));
    }

    ClusterTable& clusters() { return clusters_; }
    const ClusterTable& clusters() const { return clusters_; }

    /// Of what pens draw that is the interface's own.
    ViewTheme theme;
    /// None hides it; so does a place outside.
    std::optional<Cursor> cursor;

 private:
    std::size_t start(int y) const { return static_cast<std::size_t>(y) * static_cast<std::size_t>(cols_); }

    int cols_ = 0;
    int rows_ = 0;
    std::vector<StoredCell> cells_;
    ClusterTable clusters_;
};

}  // namespace orvane
