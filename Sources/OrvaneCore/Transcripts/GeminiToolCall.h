#pragma once

#include <string>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::GeminiToolCall {

/// Why an element of `toolCalls` failed, as its `result` or `error` tells; empty when nothing does.
std::string failureText(const TranscriptRecord& call);

/// What the tool printed.
std::string outputText(const TranscriptRecord& call);

}  // namespace orvane::GeminiToolCall
