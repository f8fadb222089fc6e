#pragma once

#include <optional>
#include <string_view>

#include "OrvaneCore/Agents/Signals/AgentLayout.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

namespace CodexSignals {

bool isActionRequired(std::string_view title);

/// Whether the row of the running turn, "• Working (7s • esc to interrupt)", stands right above the composer. While an
/// answer streams it is not shown.
bool isBusy(const AgentLayout& layout);

}  // namespace CodexSignals

namespace CodexNotificationSignals {

/// The question that Codex asks at the end of the rows, joined by newlines.
std::optional<ApprovalPolicy::Request> request(std::string_view text);

bool awaitsUser(const AgentLayout& layout);
std::optional<ApprovalPolicy::Request> request(const AgentLayout& layout);

}  // namespace CodexNotificationSignals

}  // namespace orvane
