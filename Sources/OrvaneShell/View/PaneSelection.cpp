#include "OrvaneShell/View/PaneSelection.h"

#include <algorithm>

#include "TerminalEmulator/Terminal.h"

namespace orvane {

Position PaneSelection::shownAt(const Terminal& terminal, int col, int row) {
    return {.row = terminal.getTopVisibleRow() + row, .col = col};
}

void PaneSelection::begin(const Uuid& session, const Terminal& terminal, Position at, SelectionMode mode) {
    session_ = session;
    head_.reset();
    service_ = std::make_unique<SelectionService>(terminal.buffer(), terminal.clusters());
    service_->startSelection(at, mode);
}

void PaneSelection::extend(const Terminal& terminal, Position to) {
    if (!service_) return;
    service_->extend(to);
    head_ = to;
    headLinesTop_ = terminal.buffer().linesTop();
}

std::optional<Position> PaneSelection::head(const Terminal& terminal) const {
    const std::uint64_t top = terminal.buffer().linesTop();
    if (!service_ || !head_ || top < headLinesTop_) return std::nullopt;
    const auto fallen = static_cast<std::int64_t>(top - headLinesTop_);
    return Position{.row = static_cast<int>(std::max<std::int64_t>(0, head_->row - fallen)), .col = head_->col};
}

void PaneSelection::paint(CanvasPen& pen, const CellRect& body, const Terminal& terminal) const {
    if (!service_ || !service_->hasSelection()) return;
    const int top = terminal.getTopVisibleRow();
    for (int row = 0; row < body.rows; ++row) {
        const auto cols = service_->selectedCols(top + row);
        if (!cols) continue;
        const int start = std::min(cols->startCol, body.cols);
        pen.restyle({body.x + start, body.y + row, std::min(cols->endCol, body.cols) - start, 1}, [](Attribute look) {
            look.style = static_cast<Attribute::CharacterStyle>(
                static_cast<std::uint8_t>(look.style) ^ static_cast<std::uint8_t>(Attribute::CharacterStyle::inverse));
            return look;
        });
    }
}

}  // namespace orvane
