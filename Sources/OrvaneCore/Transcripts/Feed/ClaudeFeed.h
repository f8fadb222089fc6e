#pragma once

#include <string_view>

#include "OrvaneCore/Transcripts/Feed/FeedState.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::TranscriptFeed {

/// Reads the lines of Claude Code's transcripts.
class ClaudeFeed {
 public:
    void take(std::string_view line, FeedState& state);

 private:
    static void takeAssistant(const TranscriptRecord& message, const Origin& origin, FeedState& state);
    static void takeBlock(const TranscriptRecord& block, Role textRole, const Origin& origin, FeedState& state);
    static void takeUser(const TranscriptRecord& content, const Origin& origin, FeedState& state);
    void takeOversized(std::string_view line, FeedState& state);

    TranscriptParser parser_;
};

}  // namespace orvane::TranscriptFeed
