#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "TerminalEmulator/SelectionService.h"

namespace orvane {

class Terminal;

/// What is selected in one pane, with the mouse or by keys.
class PaneSelection {
 public:
    /// Begins at a cell of the ring. The terminal must be there as long as the selection; whoever ends a session clears
    /// it.
    void begin(const Uuid& session, const Terminal& terminal, Position at, SelectionMode mode);
    /// Selects from where it began to a cell of the ring, both included.
    void extend(const Terminal& terminal, Position to);
    void clear() { service_.reset(); }

    /// The session that it is in.
    std::optional<Uuid> session() const { return service_ ? std::optional(session_) : std::nullopt; }
    SelectionMode mode() const { return service_ ? service_->mode() : SelectionMode::character; }
    /// The cell where it began; none when that is gone.
    std::optional<Position> pivot() const { return service_ ? service_->pivot() : std::nullopt; }
    /// The cell that it was extended to last, where that is now; none when it was not.
    std::optional<Position> head(const Terminal& terminal) const;
    std::string text() const { return service_ ? service_->selectedText() : std::string(); }
    /// Marks what is selected of a terminal that was drawn into the rectangle.
    void paint(CanvasPen& pen, const CellRect& body, const Terminal& terminal) const;

    /// The cell of the ring that a terminal's view shows there.
    static Position shownAt(const Terminal& terminal, int col, int row);

 private:
    Uuid session_;
    std::unique_ptr<SelectionService> service_;
    std::optional<Position> head_;
    std::uint64_t headLinesTop_ = 0;  ///< of the buffer when `head_` was a place in it
};

}  // namespace orvane
