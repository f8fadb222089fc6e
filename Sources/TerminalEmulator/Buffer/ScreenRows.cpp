#include "TerminalEmulator/Buffer/ScreenRows.h"

#include <algorithm>
#include <numeric>

namespace orvane {

ScreenRows::ScreenRows(int cols, int rows, std::uint64_t& generations)
    : cols_(cols),
      generations_(&generations),
      slab_(std::make_unique_for_overwrite<StoredCell[]>(static_cast<std::size_t>(cols) *
                                                         static_cast<std::size_t>(rows))),
      heads_(static_cast<std::size_t>(rows)),
      order_(static_cast<std::size_t>(rows)) {
    std::iota(order_.begin(), order_.end(), 0U);
    for (std::size_t index = 0; index < heads_.size(); ++index) {
        heads_[index].cells = slab_.get() + index * static_cast<std::size_t>(cols);
        heads_[index].generation = ++generations;
    }
}

RowView ScreenRows::view(int index) const {
    const ScreenRow& head = row(index);
    return {.cells = {head.cells, static_cast<std::size_t>(head.length)},
            .cols = cols_,
            .isWrapped = head.isWrapped,
            .renderMode = head.renderMode,
            .startsPrompt = head.startsPrompt,
            .generation = head.generation};
}

void ScreenRows::rotateUp(int top, int bottom, const StoredCell& fill) {
    if (top == 0 && bottom == count() - 1) {
        first_ = first_ + 1 == order_.size() ? 0 : first_ + 1;
    } else {
        straighten();
        std::rotate(order_.begin() + top, order_.begin() + top + 1, order_.begin() + bottom + 1);
    }
    recycle(bottom, fill);
}

void ScreenRows::rotateDown(int top, int bottom, const StoredCell& fill) {
    if (top == 0 && bottom == count() - 1) {
        first_ = (first_ == 0 ? order_.size() : first_) - 1;
    } else {
        straighten();
        std::rotate(order_.begin() + top, order_.begin() + bottom, order_.begin() + bottom + 1);
    }
    recycle(top, fill);
}

std::size_t ScreenRows::bytesInUse() const {
    return heads_.size() * static_cast<std::size_t>(cols_) * sizeof(StoredCell) +
           heads_.capacity() * sizeof(ScreenRow) + order_.capacity() * sizeof(std::uint32_t);
}

void ScreenRows::recycle(int index, const StoredCell& fill) {
    ScreenRow& head = row(index);
    head.isWrapped = false;
    head.renderMode = RenderLineMode::single;
    head.startsPrompt = false;
    BufferLine(head, cols_, *generations_).fill(fill);
}

void ScreenRows::straighten() {
    std::rotate(order_.begin(), order_.begin() + static_cast<std::ptrdiff_t>(first_), order_.end());
    first_ = 0;
}

}  // namespace orvane
