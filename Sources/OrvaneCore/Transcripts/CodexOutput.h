#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// How a tool call of Codex ended.
struct CodexOutput {
    bool hasFailed = false;
    /// What the tool printed, without what Codex wrote above it.
    std::string body;

    /// Reads the `output` of a record: text under a heading of Codex, or JSON with `output` and `metadata.exit_code`,
    /// itself or in a string.
    static CodexOutput read(const TranscriptRecord& output, TranscriptParser& inner);

    /// The digits, nine at most, behind the first "exited with code ".
    static std::optional<long> exitCode(std::string_view text);
};

}  // namespace orvane
