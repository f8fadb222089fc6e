#pragma once

#include <optional>
#include <span>
#include <string>

#include "OrvaneCore/Agents/Signals/AgentLayout.h"
#include "OrvaneCore/Agents/Signals/PrintedOption.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

/// What Claude Code's screen says. Rows come from the top, without blanks at their ends.
namespace ClaudePromptSignals {

using Choice = PrintedOption;

/// Whether one of the last three written rows is that of a spinner or names the key that interrupts.
bool isBusy(std::span<const std::string> screenRows);

/// Whether a dialog is up: its hint of keys is the last written row, or one of its choices is selected.
bool awaitsUser(std::span<const std::string> screenRows);

/// The dialog's question and the answers that it offers, without those that open a field for words.
std::optional<ApprovalPolicy::Request> request(std::span<const std::string> inScreenRows);

// The same of a screen that is taken apart already. What the agent said and what the user types do not count as busy.
bool isBusy(const AgentLayout& layout);
bool awaitsUser(const AgentLayout& layout);
std::optional<ApprovalPolicy::Request> request(const AgentLayout& layout);

}  // namespace ClaudePromptSignals

}  // namespace orvane
