#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/Signals/AgentRow.h"

namespace orvane {

/// Where an agent's composer stands on its screen, if it has one there. A prompt that was sent is shown again higher
/// up, much as the composer shows it, and a draft may look like a dialog's options: the rows around it tell.
struct ComposerPlace {
    std::size_t first = 0;  ///< the row of the marker
    std::size_t end = 0;    ///< behind its last row; hints follow

    /// `rows` are those that `prepared` was made of: as many, from the same one on.
    static std::optional<ComposerPlace> find(SessionKind kind, std::span<const std::string> rows,
                                             AgentRowSpan prepared);

    /// What is typed into it, as `TerminalComposer::draft` tells it.
    std::optional<std::string> draft(std::span<const std::string> rows, const std::vector<bool>& dimmed) const;
};

}  // namespace orvane
