#include "TerminalEmulator/Links/LinkFinder.h"

#include "TerminalEmulator/Links/ExplicitLink.h"
#include "TerminalEmulator/Links/ImplicitLink.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {

std::optional<LinkMatch> LinkFinder::link(Position at, LinkMode mode) const {
    if (at.row < 0 || at.row >= buffer_->count() || at.col < 0 || at.col >= buffer_->cols()) return std::nullopt;
    at.col = LogicalLine::characterCol(buffer_->row(at.row), at.col);
    if (auto match = explicitLink(*buffer_, at)) return match;
    if (mode == LinkMode::explicitOnly) return std::nullopt;
    return implicitLink(*buffer_, clusters_, at);
}

}  // namespace orvane
