#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "OrvaneCore/Agents/Signals/AgentRow.h"

namespace orvane {

/// What a dialog says above its options.
struct DialogHead {
    std::string heading;               ///< "Bash command"; may be empty
    std::string question;              ///< empty when nothing stands above the options
    std::optional<int> questionIndex;  ///< from 1, of a dialog with several questions
    std::optional<int> questionCount;

    enum class Answered { yes, no };  ///< whether an option of the question in sight is taken already

    /// Reads upward from the row of the first option.
    static DialogHead above(AgentRowSpan rows, std::size_t firstOption, Answered answered);
};

}  // namespace orvane
