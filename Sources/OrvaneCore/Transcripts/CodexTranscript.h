#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptReading.h"

namespace orvane {

/// The rollouts of Codex: JSON lines, `~/.codex/sessions/YYYY/MM/DD/rollout-TIME-SESSION.jsonl`.
namespace CodexTranscript {

/// What the lines tell, which stand in the order of the file; none when that is nothing. An aborted turn counts as
/// running: what Codex does next is open then.
std::optional<TranscriptReading> parse(std::span<const std::string_view> lines);

/// Whether the session was started in that folder, slashes at the end aside.
bool belongsToProject(std::span<const std::string_view> headLines, std::string_view projectPath);

}  // namespace CodexTranscript

}  // namespace orvane
