#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "TerminalEmulator/Buffer/HistoryPage.h"

namespace orvane {

/// A row of the history, unpacked.
struct HistoryRow {
    std::vector<StoredCell> cells;  ///< in use
    std::size_t textCells = 0;  ///< of them; those behind only have a background and take no part in a line's laying
    bool isWrapped = false;
    RenderLineMode renderMode = RenderLineMode::single;
    bool startsPrompt = false;
};

/// The rows that have left the screen, as logical lines: packed, and broken into rows by the present width only when
/// they are read. A change of width counts rows anew from the lengths of the pieces (the text is looked at only where
/// there are wide characters) and moves no text.
///
/// Bounds: rows, and bytes of memory. What is over a bound goes from the oldest end, in whole rows for the first and in
/// whole pages of 16 KiB for the second. Rows have numbers that count on since the history began.
class History {
 public:
    struct Limits {
        std::uint64_t rows = 0;
        std::size_t bytes = std::size_t{64} << 20;
    };

    /// Whether the row below the one that is appended continues it.
    enum class Next { startsLine, continues, continuesWithWide };

    History(int cols, Limits limits) : cols_(static_cast<std::uint32_t>(cols)), limits_(limits) {}

    std::uint64_t rowCount() const { return rowsStarted_ - frontRow_; }
    /// The number of the oldest row: how many rows have been dropped, rows taken back not counted.
    std::uint64_t frontRow() const { return frontRow_; }

    /// The newest row from now on: every call adds exactly one. What falls out of the bounds goes.
    void append(const RowView& row, Next next);
    /// Unpacks row `index`, 0 being the oldest; it must exist. Reading on from the row read before is quickest.
    void read(std::uint64_t index, HistoryRow& row) const;
    /// Takes the newest row out again; there must be one.
    HistoryRow takeNewest();

    /// Breaks rows anew.
    void setColumns(int cols);
    void setRowLimit(std::uint64_t rows);
    void setByteLimit(std::size_t bytes);
    /// Forgets all rows. Numbers of rows go on.
    void clear();

    /// Grows when rows may have changed that still have their number.
    std::uint64_t epoch() const { return epoch_; }

    void markPayloads(PayloadSet& set) const;
    std::size_t bytesInUse() const;

 private:
    /// A piece, and a cell in it. `page` is the number of pages when the end is meant.
    struct Position {
        std::size_t page = 0;
        std::uint32_t piece = 0;
        std::uint32_t cell = 0;
    };

    /// How far rows have been counted.
    struct Layout {
        std::uint64_t rows = 0;    ///< started so far
        std::uint32_t column = 0;  ///< in use of the newest
    };

    bool isEnd(const Position& at) const { return at.page == pages_.size(); }
    const HistoryPiece& pieceAt(const Position& at) const { return pages_[at.page].piece(at.piece); }
    Position nextPiece(Position at) const;
    bool isFront(const Position& at) const { return at.page == 0 && at.piece == front_.piece; }
    std::uint32_t cellsThatFit(const Position& at, std::uint32_t room) const;
    Position nextRow(Position at) const;
    Position rowPosition(std::uint64_t number) const;
    Position rowInPiece(Position at, Layout before, std::uint64_t number) const;
    void advance(Layout& layout, const Position& at) const;
    Layout layoutOfPage(std::size_t page, Layout layout) const;
    void readAt(Position at, HistoryRow& row) const;
    void fillNewestRow(bool isWideNext);
    void truncate(const Position& at);
    void appendPiece(HistoryPiece piece, std::span<const StoredCell> cells);
    void addPage(std::size_t bytes);
    void dropRows(std::uint64_t count);
    bool dropFrontPiece();
    void dropPage();
    void enforceLimits();
    void changedRows();

    std::uint32_t cols_;
    Limits limits_;
    std::deque<HistoryPage> pages_;
    HistoryPage spare_;  ///< memory of a page that was dropped, for the next one
    std::size_t pageBytes_ = 0;
    Position front_;  ///< where the oldest row starts, always in the first page
    std::uint64_t frontRow_ = 0;
    std::uint64_t rowsStarted_ = 0;  ///< since the history began
    std::uint32_t columnAtEnd_ = 0;  ///< in use of the newest row
    std::uint64_t epoch_ = 0;

    std::vector<std::uint8_t> packed_;              ///< scratch of `append`
    mutable std::vector<StoredCell> unpacked_;      ///< scratch of `read`
    mutable std::optional<std::uint64_t> hintRow_;  ///< the row that `hint_` is the start of
    mutable Position hint_;
};

}  // namespace orvane
