#pragma once

#include <optional>

#include "OrvaneCore/Agents/Signals/AgentLayout.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

/// What Gemini CLI's screen says.
namespace GeminiPromptSignals {

/// Whether a spinner, "⠴ Thinking... (esc to cancel, 5s)", turns above the composer.
bool isBusy(const AgentLayout& layout);

/// Whether a dialog with a selected row ("● 1. Allow once") is up.
bool awaitsUser(const AgentLayout& layout);

std::optional<ApprovalPolicy::Request> request(const AgentLayout& layout);

}  // namespace GeminiPromptSignals

}  // namespace orvane
