#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

/// What a tool call works on: a file, a command, a query. The targets are one line, not cut.
namespace orvane::CallTarget {

/// The first of the keys that name targets whose value is a string that is not blank, or an array of strings.
std::optional<std::string> of(const TranscriptRecord& input);

/// Of Codex's calls: the file of a patch, else a key of `arguments`, `input` or `action`, which may be JSON in a
/// string. An input that is no JSON is the target itself.
std::optional<std::string> ofCodexCall(const TranscriptRecord& payload, TranscriptParser& inner);

/// The first file that a patch names, also in its JSON form.
std::optional<std::string> patched(std::string_view patch);

/// By a scan of the head.
std::optional<std::string> of(const OversizedLine& line);
std::optional<std::string> ofCodexCall(const OversizedLine& line, std::string_view tool);

}  // namespace orvane::CallTarget
