#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "TerminalEmulator/Buffer/PayloadHolder.h"
#include "TerminalEmulator/Buffer/RowView.h"

namespace orvane {

/// What the history knows of a piece of a logical line without reading its bytes. A piece is what one row of the screen
/// held when it left; pieces joined by `isContinuation` are one logical line.
struct HistoryPiece {
    std::uint32_t offset = 0;      ///< of its bytes in the page
    std::uint32_t cells : 27 = 0;  ///< that take part in the laying of rows: without what only has a background
    std::uint32_t isContinuation : 1 = 0;
    std::uint32_t hasWide : 1 = 0;
    std::uint32_t renderMode : 2 = 0;
    std::uint32_t startsPrompt : 1 = 0;  ///< in the row that the piece begins in
};

static_assert(sizeof(HistoryPiece) == 8);

/// A block of packed pieces: their bytes grow from its start, what is known of them from its end.
class HistoryPage {
 public:
    static constexpr std::size_t usualBytes = 16 * 1024;

    HistoryPage() = default;  ///< without memory
    /// Room for `bytes` at least, or the usual size.
    explicit HistoryPage(std::size_t bytes);

    bool hasRoom(std::size_t bytes) const;
    /// The piece's own `offset` is set here. There must be room.
    void append(HistoryPiece piece, std::span<const std::uint8_t> bytes);
    /// Takes the pieces from `count` on away again.
    void truncate(std::uint32_t count);
    void reset();

    std::uint32_t count() const { return count_; }
    const HistoryPiece& piece(std::uint32_t index) const { return units_[capacity_ - 1 - index]; }
    const std::uint8_t* bytes(std::uint32_t index) const { return data() + piece(index).offset; }

    void notePayloads(std::span<const StoredCell> cells);
    void markPayloads(PayloadSet& set) const;

    std::size_t bytesInUse() const {
        return sizeof(HistoryPage) + capacity_ * sizeof(HistoryPiece) + payloads_.capacity() * sizeof(std::uint16_t);
    }
    bool isUsualSize() const { return capacity_ * sizeof(HistoryPiece) == usualBytes; }

    // Where rows break at the present width; kept by `History`.
    std::uint64_t firstRow = 0;       ///< how many rows start before the page, counted since the history began
    std::uint32_t columnAtStart = 0;  ///< in use of the row that runs on from the page before

 private:
    const std::uint8_t* data() const { return reinterpret_cast<const std::uint8_t*>(units_.get()); }

    std::unique_ptr<HistoryPiece[]> units_;
    std::size_t capacity_ = 0;  ///< in pieces
    std::size_t used_ = 0;      ///< in bytes, from the start
    std::uint32_t count_ = 0;
    std::vector<std::uint16_t> payloads_;  ///< of the pieces; some may be gone again
};

}  // namespace orvane
