#pragma once

#include <optional>

#include "OrvaneCore/Agents/Signals/AgentRow.h"
#include "OrvaneCore/Agents/Signals/PrintedOption.h"

namespace orvane {

/// A row with an option: a mark perhaps, a number and a dot, a box to tick perhaps, a label, an explanation perhaps.
struct ChoiceRow {
    PrintedOption option;
    int markColumn = 0;  ///< of the mark, or of the number without one
    int numberColumn = 0;
    int labelColumn = 0;

    static std::optional<ChoiceRow> parse(const AgentRow& row);

    /// Whether the row bears a mark and a text without a number, "❯ No, exit"; `numberColumn` is the label's then.
    static std::optional<ChoiceRow> parseSelected(const AgentRow& row);
    /// A row without a mark as an option without a number.
    static ChoiceRow parsePlain(const AgentRow& row);
};

}  // namespace orvane
