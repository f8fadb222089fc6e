#pragma once

#include <expected>
#include <string>

#include "Orvane/History/SubagentReader.h"
#include "OrvaneCore/Transcripts/TraceReport.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"
#include "Platform/SystemError.h"

namespace orvane::ConversationTrace {

/// What was done in a conversation, by its transcript and the files of its subagents. Files below the project are told
/// without its path. Blocks on the disk, so it is for background threads. A reader that is kept between calls reads
/// less.
std::expected<TraceReport, SystemError> read(const std::string& path, TranscriptProvider provider,
                                             const std::string& projectPath, SubagentReader& subagents);

}  // namespace orvane::ConversationTrace
