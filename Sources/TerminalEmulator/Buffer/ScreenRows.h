#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "TerminalEmulator/Buffer/BufferLine.h"

namespace orvane {

/// The rows of the live screen: one slab of cells, 16 bytes each, and the order of its rows. Scrolling moves numbers of
/// rows, never cells; the row that comes in is the one that went out, with its cells reset.
class ScreenRows {
 public:
    ScreenRows() = default;  ///< no rows at all
    /// All rows blank. `generations` outlives the rows.
    ScreenRows(int cols, int rows, std::uint64_t& generations);

    int cols() const { return cols_; }
    int count() const { return static_cast<int>(order_.size()); }

    ScreenRow& row(int index) { return heads_[slot(index)]; }
    const ScreenRow& row(int index) const { return heads_[slot(index)]; }
    BufferLine line(int index) { return {row(index), cols_, *generations_}; }
    RowView view(int index) const;

    /// Rows `top` + 1 to `bottom` move up by one; a row of `fill` comes in at the bottom.
    void rotateUp(int top, int bottom, const StoredCell& fill);
    /// Rows `top` to `bottom` - 1 move down by one; a row of `fill` comes in at the top.
    void rotateDown(int top, int bottom, const StoredCell& fill);

    std::size_t bytesInUse() const;

 private:
    std::size_t slot(int index) const {
        std::size_t at = first_ + static_cast<std::size_t>(index);
        if (at >= order_.size()) at -= order_.size();
        return order_[at];
    }
    void recycle(int index, const StoredCell& fill);
    void straighten();

    int cols_ = 0;
    std::uint64_t* generations_ = nullptr;
    std::unique_ptr<StoredCell[]> slab_;
    std::vector<ScreenRow> heads_;
    std::vector<std::uint32_t> order_;  ///< heads from top to bottom, starting at `first_` and going round
    std::size_t first_ = 0;
};

}  // namespace orvane
