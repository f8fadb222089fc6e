#include "TerminalEmulator/Buffer/HistoryPage.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace orvane {

HistoryPage::HistoryPage(std::size_t bytes)
    : capacity_((std::max(bytes + sizeof(HistoryPiece), usualBytes) + sizeof(HistoryPiece) - 1) /
                sizeof(HistoryPiece)) {
    units_ = std::make_unique_for_overwrite<HistoryPiece[]>(capacity_);
}

bool HistoryPage::hasRoom(std::size_t bytes) const {
    return used_ + bytes + (count_ + 1) * sizeof(HistoryPiece) <= capacity_ * sizeof(HistoryPiece);
}

void HistoryPage::append(HistoryPiece piece, std::span<const std::uint8_t> bytes) {
    assert(hasRoom(bytes.size()));
    piece.offset = static_cast<std::uint32_t>(used_);
    std::memcpy(reinterpret_cast<std::uint8_t*>(units_.get()) + used_, bytes.data(), bytes.size());
    used_ += bytes.size();
    units_[capacity_ - 1 - count_] = piece;
    ++count_;
}

void HistoryPage::truncate(std::uint32_t count) {
    if (count >= count_) return;
    used_ = piece(count).offset;
    count_ = count;
}

void HistoryPage::reset() {
    used_ = 0;
    count_ = 0;
    payloads_ = {};
}

void HistoryPage::notePayloads(std::span<const StoredCell> cells) {
    for (const StoredCell& cell : cells) {
        const std::uint16_t code = cell.payload().code;
        if (code != 0 && (payloads_.empty() || payloads_.back() != code)) payloads_.push_back(code);
    }
}

void HistoryPage::markPayloads(PayloadSet& set) const {
    for (const std::uint16_t code : payloads_)
        set.insert(code);
}

}  // namespace orvane
