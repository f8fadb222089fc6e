#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// "Set model to Opus 5.5 and saved as your default", as Claude Code says it.
namespace ClaudeModelSwitch {

/// The label of the model that the line says was set.
std::optional<std::string> detect(std::string_view inLine);
/// The newest such line of rows joined by newlines.
std::optional<std::string> detectInTerminalText(std::string_view text);
/// The identifier for a label: "Opus 5.5" is "claude-opus-5-5", "Sonnet (1M context)" is "sonnet[1m]". Nothing for a
/// label that is no model's name.
std::optional<std::string> identifier(std::string_view forLabel);

}  // namespace ClaudeModelSwitch

}  // namespace orvane
