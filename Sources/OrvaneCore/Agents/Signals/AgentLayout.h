#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/Signals/AgentRow.h"
#include "OrvaneCore/Agents/Signals/ComposerPlace.h"
#include "OrvaneCore/Agents/Signals/PrintedDialog.h"

namespace orvane {

/// An agent's screen taken apart: the conversation, then either a dialog, or a composer with the row of a running turn
/// above it and hints below.
struct AgentLayout {
    static constexpr std::size_t dialogRows = 60;       ///< looked at for a dialog of Claude Code
    static constexpr std::size_t codexDialogRows = 80;  ///< of Codex

    std::vector<AgentRow> rows;
    std::optional<ComposerPlace> composer;  ///< none while a dialog is up
    std::optional<PrintedDialog> dialog;

    static AgentLayout of(SessionKind kind, std::span<const std::string> rows, int columns = 0);

    /// What is typed into the composer; `rows` are those that the layout was made of.
    std::optional<std::string> draft(std::span<const std::string> rows, const std::vector<bool>& dimmed) const;

    /// A row of keys stands at the bottom where a composer would be.
    bool endsInDecisionHint() const;
    /// Rows above the composer, or all when there is none, the lowest last, at most so many that are not blank.
    AgentRowSpan aboveComposer(std::size_t maximum) const;
    AgentRowSpan belowComposer() const;

 private:
    std::size_t firstRead_ = 0;
};

}  // namespace orvane
