#include "TerminalEmulator/Search/LineOffsetMapper.h"

#include "TerminalEmulator/LogicalLine.h"

namespace orvane {

Position LineOffsetMapper::cellAt(std::size_t offset) {
    while (cell_.row < buffer_.count()) {
        const int cols = LogicalLine::textCols(buffer_, cell_.row);
        for (const RowView row = buffer_.row(cell_.row); cell_.col < cols;) {
            scratch_.clear();
            LogicalLine::appendCell(row.at(cell_.col), clusters_, scratch_);
            if (offset_ + scratch_.size() > offset) return cell_;
            offset_ += scratch_.size();
            ++cell_.col;
        }
        cell_ = {.row = cell_.row + 1};
    }
    return cell_;
}

Position LineOffsetMapper::behind(std::size_t offset) {
    const Position last = cellAt(offset - 1);
    return {.row = last.row, .col = LogicalLine::colBehindCharacter(buffer_.row(last.row), last.col)};
}

}  // namespace orvane
