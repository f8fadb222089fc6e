#pragma once

#include <string_view>

#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::ToolTrace {

/// Reads tool calls from the lines of Codex's rollout files.
class CodexTrace {
 public:
    void take(std::string_view line, TraceBuilder& builder);

 private:
    void takeCall(const TranscriptRecord& record, TraceBuilder& builder);
    void takeOutput(const TranscriptRecord& record, TraceBuilder& builder);
    void takeOversized(std::string_view line, TraceBuilder& builder);

    TranscriptParser parser_;
    TranscriptParser inner_;
};

}  // namespace orvane::ToolTrace
