#pragma once

#include <string_view>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/SessionStatus.h"

namespace orvane {

/// What the titles that agents give their terminal say; `unknown` for a title that says nothing.
namespace AgentTitle {

/// A turning glyph before the title while busy, ✳ while idle and also while a dialog is up.
SilenceVerdict claude(std::string_view title);
/// A turning glyph before the title while busy, "[ ! ] Action Required" or "[ . ] Action Required" while it asks.
SilenceVerdict codex(std::string_view title);
/// "◇  Ready (folder)", "✦  Working… (folder)", "✋  Action Required (folder)".
SilenceVerdict gemini(std::string_view title);

SilenceVerdict verdict(SessionKind kind, std::string_view title);

}  // namespace AgentTitle

}  // namespace orvane
