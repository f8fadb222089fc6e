#pragma once

#include <initializer_list>
#include <optional>
#include <string_view>

#include "OrvaneCore/Agents/Signals/AgentRow.h"
#include "OrvaneCore/Agents/Signals/ChoiceList.h"
#include "OrvaneCore/Agents/Signals/DialogHead.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

/// A dialog that an agent draws at the bottom of its screen. Whether a composer is there instead is for those to tell
/// who know the agent.
struct PrintedDialog {
    ChoiceList list;
    DialogHead head;
    bool hasHint = false;  ///< a row below the options names the keys

    enum class Unnumbered { taken, ignored };

    static std::optional<PrintedDialog> find(AgentRowSpan rows, Unnumbered unnumbered);

    bool takesSeveral() const;
    /// Nothing without a question. A question with one of these texts in it, in lower case, asks for consent.
    std::optional<ApprovalPolicy::Request> request(std::initializer_list<std::string_view> consents) const;
};

}  // namespace orvane
