#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "OrvaneCore/Agents/Signals/AgentRow.h"
#include "OrvaneCore/Agents/Signals/PrintedOption.h"

namespace orvane {

/// A list from which something is chosen.
struct ChoiceList {
    std::vector<PrintedOption> options;
    std::size_t firstRow = 0;
    std::size_t lastRow = 0;  ///< of the options' own rows; what is explained below them does not count

    bool isNumbered() const { return options.front().number > 0; }
    /// Exactly one is selected: a printed list has no selection, one that is drawn has.
    bool isLive() const;
    /// 0 when none is, or when it has no number.
    int selectedNumber() const;

    /// The lowest list with numbers: "❯ 1. Yes", "  2. No".
    static std::optional<ChoiceList> numbered(AgentRowSpan rows);
    /// The lowest list without: "❯ No, exit", "  Yes, I trust this folder".
    static std::optional<ChoiceList> unnumbered(AgentRowSpan rows);
};

}  // namespace orvane
