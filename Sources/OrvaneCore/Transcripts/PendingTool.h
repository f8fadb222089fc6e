#pragma once

#include "OrvaneCore/Transcripts/TranscriptReading.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// The tool that an agent has called and not yet heard of.
namespace PendingTool {

/// Notes a `tool_use` block: its name, what it acts on and, when it asks the person something, the question.
void note(const TranscriptRecord& toolUse, TranscriptReading& reading);

}  // namespace PendingTool

}  // namespace orvane
