#pragma once

#include <string_view>

#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::ToolTrace {

/// Reads tool calls from the lines of Gemini CLI's transcripts, where a call stands together with its result.
class GeminiTrace {
 public:
    void take(std::string_view line, TraceBuilder& builder);

 private:
    TranscriptParser parser_;
};

}  // namespace orvane::ToolTrace
