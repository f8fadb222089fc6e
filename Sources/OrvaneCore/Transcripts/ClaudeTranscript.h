#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptReading.h"

namespace orvane {

/// The transcripts of Claude Code: JSON lines, `~/.claude/projects/FOLDER/SESSION.jsonl`.
namespace ClaudeTranscript {

/// What the lines tell, which stand in the order of the file; none when that is nothing.
std::optional<TranscriptReading> parse(std::span<const std::string_view> lines);

/// Whether the file begins where a session was cleared.
bool isClearSuccessor(std::span<const std::string_view> headLines);

}  // namespace ClaudeTranscript

}  // namespace orvane
