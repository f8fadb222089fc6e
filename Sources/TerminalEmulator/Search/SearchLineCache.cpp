#include "TerminalEmulator/Search/SearchLineCache.h"

#include <algorithm>

#include "TerminalEmulator/LogicalLine.h"

namespace orvane {

void SearchLineCache::setBuffer(const Buffer& buffer) {
    buffer_ = &buffer;
    clear();
}

void SearchLineCache::clear() {
    kept_.clear();
    scratch_ = {};
    bytes_ = 0;
}

std::int64_t SearchLineCache::lastBlock() const {
    return (oldestRow() + std::max(0, buffer_->count() - 1)) / rowsPerBlock;
}

const SearchBlock& SearchLineCache::block(std::int64_t number) {
    dropFallen();
    if (const auto found = kept_.find(number); found != kept_.end()) {
        if (isGood(found->second, number)) return found->second.block;
        bytes_ -= found->second.block.text.size();
        kept_.erase(found);
    }
    scratch_ = read(number);
    const bool isInHistory = ringRow(scratch_.lastRow) < buffer_->yBase();
    const std::size_t size = scratch_.block.text.size();
    if (!isInHistory || bytes_ + size > maximumBytes) return scratch_.block;
    bytes_ += size;
    return kept_.emplace(number, std::move(scratch_)).first->second.block;
}

void SearchLineCache::dropFallen() {
    while (!kept_.empty() && kept_.begin()->first < firstBlock()) {
        bytes_ -= kept_.begin()->second.block.text.size();
        kept_.erase(kept_.begin());
    }
}

/// Where lines start within a block depends on the rows of the block before it, so both must still be there, or as much
/// of them as then.
bool SearchLineCache::isGood(const Kept& kept, std::int64_t number) const {
    const std::int64_t needed = (number - 1) * rowsPerBlock;
    const bool hasRowsBefore = kept.oldestRow == oldestRow() || (kept.oldestRow <= needed && oldestRow() <= needed);
    return hasRowsBefore && hasGeneration(kept.firstRow, kept.firstGeneration) &&
           hasGeneration(kept.lastRow, kept.lastGeneration);
}

bool SearchLineCache::hasGeneration(std::int64_t row, std::uint64_t generation) const {
    const std::int64_t place = row - oldestRow();
    return place >= 0 && place < buffer_->yBase() && buffer_->row(static_cast<int>(place)).generation == generation;
}

bool SearchLineCache::startsLine(int ringRow) const {
    if (ringRow == 0 || !buffer_->row(ringRow).isWrapped) return true;
    if ((oldestRow() + ringRow) % rowsPerBlock != 0) return false;
    constexpr int rowsAbove = static_cast<int>(rowsPerBlock) - 1;
    if (ringRow <= rowsAbove) return false;
    const int first = LogicalLine::firstRow(*buffer_, ringRow - 1, rowsAbove);
    return ringRow - first > rowsAbove && buffer_->row(first).isWrapped;
}

SearchLineCache::Kept SearchLineCache::read(std::int64_t number) const {
    int row = static_cast<int>(std::max<std::int64_t>(0, number * rowsPerBlock - oldestRow()));
    const int end =
        static_cast<int>(std::min<std::int64_t>(buffer_->count(), (number + 1) * rowsPerBlock - oldestRow()));
    Kept kept{.oldestRow = oldestRow(), .firstRow = oldestRow() + row};
    kept.firstGeneration = buffer_->row(row).generation;
    while (row < end && !startsLine(row))
        ++row;
    while (row < end)
        row = readLine(row, kept.block);
    kept.lastRow = oldestRow() + row;  // the row behind, which must not continue the last line
    kept.lastGeneration = buffer_->row(row).generation;
    return kept;
}

/// Appends the line that starts at a row and gives back the row behind it.
int SearchLineCache::readLine(int ringRow, SearchBlock& block) const {
    SearchLine line{.firstRow = oldestRow() + ringRow, .offset = block.text.size()};
    do {
        const LogicalLine::Below below = LogicalLine::below(*buffer_, ringRow);
        const RowView row = buffer_->row(ringRow);
        LogicalLine::appendCells(row, 0, LogicalLine::textCols(row, below), clusters_, block.text);
        ++ringRow;
        ++line.rowCount;
    } while (ringRow < buffer_->count() && !startsLine(ringRow));
    line.length = block.text.size() - line.offset;
    block.lines.push_back(line);
    return ringRow;
}

}  // namespace orvane
