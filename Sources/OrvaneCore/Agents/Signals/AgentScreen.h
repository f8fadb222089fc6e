#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Agents/Signals/PrintedOption.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

/// What one look at an agent's terminal tells about the agent. No state is kept between two looks.
struct AgentScreenReading {
    bool busy = false;
    bool dialogUp = false;  ///< something waits for the user, whether or not its question was understood
    /// The question with the answers that can be offered as buttons. Option n of it is answered by the digit n + 1,
    /// always; where the printed numbers do not allow that it has no options, and `options` tells them.
    std::optional<ApprovalPolicy::Request> request;
    std::string question;                ///< not shortened
    std::vector<PrintedOption> options;  ///< all that are in sight, those that open a field for words included
    int selectedChoice = 0;              ///< the number of the row that Return would take; 0 when it is not known
    bool takesSeveral = false;           ///< digits tick and untick; the answer is sent by a row without a number
    /// What is typed and not sent; empty for an empty composer, nothing when no composer is in sight.
    std::optional<std::string> draft;
    SilenceVerdict title = SilenceVerdict::unknown;  ///< what the title alone says
    SilenceVerdict verdict = SilenceVerdict::unknown;

    bool operator==(const AgentScreenReading&) const = default;
};

/// The screen of a terminal with an agent in it.
struct AgentScreen {
    static constexpr int rowsWanted = 80;  ///< more are not looked at

    SessionKind kind = SessionKind::claude;
    std::vector<std::string> rows;  ///< from the top; UTF-8, malformed bytes are tolerated
    std::vector<bool> dimmed;       ///< by row: all its text but the cursor's cell is faint; may be shorter than `rows`
    std::string title;
    int columns = 0;  ///< 0 when not known

    AgentScreenReading read() const;
};

}  // namespace orvane
