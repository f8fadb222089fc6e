#include "OrvaneShell/View/PaneSelection.h"

#include <algorithm>

#include "TerminalEmulator/Terminal.h"

namespace orvane {

namespace {

Position placeOf(const Terminal& terminal, int col, int row) {
    return {.row = terminal.getTopVisibleRow() + row, .col = col};
}

}  // namespace

void PaneSelection::begin(const Uuid& session, const Terminal& terminal, int col, int row, SelectionMode mode) {
    session_ = session;
    service_ = std::make_unique<SelectionService>(terminal.buffer(), terminal.clusters());
    service_->startSelection(placeOf(terminal, col, row), mode);
}

void PaneSelection::select(const Uuid& session, const Terminal& terminal, Position first, Position last) {
    session_ = session;
    service_ = std::make_unique<SelectionService>(terminal.buffer(), terminal.clusters());
    service_->startSelection(first, SelectionMode::character);
    service_->extend(last);
}

void PaneSelection::extend(const Terminal& terminal, int col, int row) {
    if (service_) service_->extend(placeOf(terminal, col, row));
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
