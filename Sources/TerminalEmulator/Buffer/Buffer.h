#pragma once

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "TerminalEmulator/Buffer/History.h"
#include "TerminalEmulator/Buffer/ScreenReflow.h"
#include "TerminalEmulator/Buffer/ScreenRows.h"
#include "TerminalEmulator/Buffer/TabStops.h"

namespace orvane {

/// One screen with its history: the normal one, or the alternate one, which has none.
///
/// Rows are read by their place in the ring: 0 is the oldest row of the history, `yBase()` the top row of the screen.
/// They are written by their place on the screen, through `line`. The screen has `rows()` rows, or none at all before
/// `fillViewportRows`. The thread that feeds the terminal is the only one here.
class Buffer {
 public:
    static constexpr int minimumCols = 2;
    static constexpr int minimumRows = 1;
    static constexpr int maximumSize = 32767;  ///< of columns and of rows
    static constexpr int maximumCapacity = 0x7FFFFFFF;

    /// Whether the row that scrolling brings in continues the one above it.
    enum class NewRow { startsLine, continues };

    /// What DECSC keeps.
    struct SavedCursor {
        int x = 0;
        int y = 0;
        bool isWrapPending = false;
        bool originMode = false;
        bool wraparound = true;
        Pen pen;
        std::array<std::uint8_t, 4> charsets{};  ///< G0 to G3 in the terminal's own numbers, 0 being ASCII
        std::uint8_t charsetLevel = 0;

        bool operator==(const SavedCursor&) const = default;
    };

    /// Without `scrollback` there is no history and a change of width cuts rows. Sizes are clamped.
    Buffer(int cols, int rows, int tabStopWidth, std::optional<int> scrollback);
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    int cols() const { return cols_; }
    int rows() const { return rows_; }
    bool hasScrollback() const { return scrollback_.has_value(); }
    std::optional<int> scrollback() const { return scrollback_; }

    // The cursor, margins and region; setters clamp to the screen.
    int x() const { return x_; }
    int y() const { return y_; }
    void setX(int x) { x_ = std::clamp(x, 0, cols_ - 1); }
    void setY(int y) { y_ = std::clamp(y, 0, rows_ - 1); }
    /// The last column has been written and the next character wraps. Nothing but a resize clears it here.
    bool isWrapPending = false;
    int marginLeft() const { return marginLeft_; }
    int marginRight() const { return marginRight_; }
    void setMarginLeft(int col);
    void setMarginRight(int col);
    int scrollTop() const { return scrollTop_; }
    int scrollBottom() const { return scrollBottom_; }
    void setScrollTop(int row);
    void setScrollBottom(int row);
    TabStops tabStops;
    SavedCursor saved;
    Pen pen;  ///< the current look of this screen

    // The view on the ring.
    int xDisp = 0;
    int xBase = 0;
    int yBase() const { return static_cast<int>(history_.rowCount()); }
    int yDisp() const { return yDisp_; }
    void setYDisp(int row);  ///< clamped to 0 and `yBase()`
    /// A view at the newest row stays on what it shows when rows come in below, as one of the history does anyway. A
    /// change of size brings it to the newest row again.
    bool holdsView = false;
    /// How many rows have fallen off the oldest end since the last `clear`: a ring place plus this stays with its row,
    /// as long as the width stays.
    std::uint64_t linesTop() const { return history_.frontRow() - linesTopAtClear_; }
    /// True when `yBase() + 2 * yDisp()` is one of the screen's rows; the cursor's own row takes no part.
    bool isCursorInViewPort() const;

    // Reading.
    int count() const { return yBase() + screen_.count(); }
    /// A row of the ring; an empty view for a place that there is not.
    RowView row(int ringIndex) const;
    CharData getChar(int col, int viewportRow) const { return getCharBufferRelative(col, viewportRow + yDisp_); }
    CharData getCharBufferRelative(int col, int ringIndex) const { return row(ringIndex).charData(col); }
    static CharData getNullCell(const Attribute& attribute) { return {.attribute = attribute}; }

    // Writing. Rows of the screen are clamped to it; it must not be empty.
    BufferLine line(int y) {
        assert(screen_.count() > 0);
        return screen_.line(std::clamp(y, 0, screen_.count() - 1));
    }
    /// Rows `top` to `bottom` move up by one. A row that leaves the top of the screen goes into the history, whatever
    /// `bottom` is. A view at the newest row stays there, unless `holdsView` is set.
    void scrollUp(int top, int bottom, const StoredCell& fill, NewRow newRow = NewRow::startsLine);
    /// The same without the history: deleting lines.
    void deleteRow(int top, int bottom, const StoredCell& fill);
    /// Rows move down by one and a blank one comes in at `top`: scrolling down and inserting lines.
    void insertRow(int top, int bottom, const StoredCell& fill);

    /// Screen and history away, cursor and view to 0, region and margins to all; tab stops and saved state stay.
    void clear();
    /// DECSTR: saved state to its initial values, margins to all columns, the region's top to 0.
    void softReset();
    /// Gives an empty buffer its blank rows; else nothing.
    void fillViewportRows(const Attribute& attribute = Attribute::empty);
    /// ED 3.
    void clearHistory();

    /// Text is laid out anew when the width of a buffer with scrollback changes, and the cursor stays on its character.
    void resize(int newCols, int newRows);
    void changeHistorySize(std::optional<int> scrollback);
    /// The bound of the history in bytes; 64 MiB at first.
    void limitHistoryBytes(std::size_t bytes) {
        history_.setByteLimit(bytes);
        afterHistoryCut();
    }

    void markPayloads(PayloadSet& set) const;
    std::size_t bytesInUse() const;

 private:
    static constexpr std::size_t cachedRows = 16;

    struct CachedRow {
        std::optional<std::uint64_t> generation;
        std::uint64_t lastRead = 0;
        HistoryRow row;
    };

    RowView historyRow(std::uint64_t index) const;
    std::uint64_t rowLimit() const;
    History::Next nextOfTopRow(int bottom, NewRow newRow) const;
    void rememberTop(History::Next next);
    void addRows(int newRows);
    void removeRows(int newRows);
    void cutToWidth(int newCols);
    void reflow(int newCols);
    void replaceScreen(const ScreenReflow& laid, int newCols);
    void moveScreen(int cols, int rows, int skipped, std::span<const HistoryRow> above);
    void afterHistoryCut();

    int cols_;
    int rows_;
    std::optional<int> scrollback_;
    std::uint64_t generations_ = 0;
    History history_;
    ScreenRows screen_;
    int x_ = 0;
    int y_ = 0;
    int yDisp_ = 0;
    int scrollTop_ = 0;
    int scrollBottom_;
    int marginLeft_ = 0;
    int marginRight_;
    std::uint64_t linesTopAtClear_ = 0;

    mutable std::array<CachedRow, cachedRows> cache_;
    mutable std::uint64_t cacheReads_ = 0;
};

}  // namespace orvane
