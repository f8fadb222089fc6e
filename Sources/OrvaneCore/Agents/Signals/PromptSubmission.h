#pragma once

#include <optional>
#include <string_view>

namespace orvane {

namespace PromptSubmission {

/// Whether keystrokes send a prompt: a Return with text before it, or one on a composer that holds some. Without a
/// draft no composer is in sight.
bool submits(std::string_view inputBytes, const std::optional<std::string_view>& draft);

}  // namespace PromptSubmission

namespace DialogAnswer {

/// Whether keystrokes answer a dialog: a Return, or one digit from 1 to 9. Arrow keys only move the selection.
bool closesDialog(std::string_view inputBytes);

}  // namespace DialogAnswer

}  // namespace orvane
