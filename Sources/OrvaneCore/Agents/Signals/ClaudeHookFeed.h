#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// A word that a hook of Claude Code appends to the session's events file.
enum class ClaudeHookEvent { prompt, tool, notify, stop, clear };

template <>
struct RawValues<ClaudeHookEvent> {
    static constexpr std::array table = {
        rawValueOf(ClaudeHookEvent::prompt, "prompt"), rawValueOf(ClaudeHookEvent::tool, "tool"),
        rawValueOf(ClaudeHookEvent::notify, "notify"), rawValueOf(ClaudeHookEvent::stop, "stop"),
        rawValueOf(ClaudeHookEvent::clear, "clear"),
    };
};

/// Claude Code runs a command on its events; ours append a word each to a file.
namespace ClaudeHookFeed {

/// The variable that names the events file, so that the settings are the same for every session.
inline constexpr std::string_view environmentKey = "ORVANE_HOOK_EVENTS";

enum class StatusLine { keep, hide };

/// What follows `--settings`: one JSON object without white space. A status line of the user's own draws over rows
/// from which the agent's state is read; hiding replaces it by one that prints nothing.
std::string settingsJson(StatusLine statusLine);

/// The same settings with hooks for events that newer versions of Claude Code have: a dialog that comes up, a turn that
/// ends in an error, a tool that fails. They tell with the same words.
std::string withFurtherHooks(std::string settings);

/// The events of a text with one word a line; unknown words are dropped.
std::vector<ClaudeHookEvent> events(std::string_view text);

/// The phase after these events. A notification counts only during a turn: Claude Code also notifies of idleness.
std::optional<AgentPhase> phase(std::span<const ClaudeHookEvent> after, std::optional<AgentPhase> from);

}  // namespace ClaudeHookFeed

}  // namespace orvane
