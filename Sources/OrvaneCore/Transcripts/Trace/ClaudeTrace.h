#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::ToolTrace {

/// Reads tool calls from the lines of Claude Code's transcripts.
class ClaudeTrace {
 public:
    void take(std::string_view line, TraceBuilder& builder);

 private:
    void takeResult(const TranscriptRecord& record, const TranscriptRecord& block, TraceBuilder& builder);
    void takeNotification(std::string_view text, std::optional<double> at, TraceBuilder& builder);
    void takeOversized(std::string_view line, TraceBuilder& builder);

    TranscriptParser parser_;
    /// By the id of a background task: the id of the call that began it.
    std::unordered_map<std::string, std::string> callOfTask_;
};

}  // namespace orvane::ToolTrace
