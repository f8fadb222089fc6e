#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "TerminalEmulator/SelectionService.h"

namespace orvane {

class Terminal;

/// What is selected in one pane, with the mouse or by a search.
class PaneSelection {
 public:
    /// Begins at a cell of the part of the terminal that shows. The terminal must be there as long as the selection;
    /// whoever ends a session clears it.
    void begin(const Uuid& session, const Terminal& terminal, int col, int row, SelectionMode mode);
    /// Selects exactly these rows and columns of the ring, up to and including the last cell.
    void select(const Uuid& session, const Terminal& terminal, Position first, Position last);
    void extend(const Terminal& terminal, int col, int row);
    void clear() { service_.reset(); }

    /// The session that it is in.
    std::optional<Uuid> session() const { return service_ ? std::optional(session_) : std::nullopt; }
    std::string text() const { return service_ ? service_->selectedText() : std::string(); }
    /// Marks what is selected of a terminal that was drawn into the rectangle.
    void paint(CanvasPen& pen, const CellRect& body, const Terminal& terminal) const;

 private:
    Uuid session_;
    std::unique_ptr<SelectionService> service_;
};

}  // namespace orvane
