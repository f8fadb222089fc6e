#pragma once

#include <string_view>

#include "OrvaneCore/Transcripts/Feed/FeedState.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::TranscriptFeed {

/// Reads the lines of Codex's rollout files.
class CodexFeed {
 public:
    void take(std::string_view line, FeedState& state);

 private:
    void takePayload(std::string_view type, const TranscriptRecord& payload, const Origin& origin, FeedState& state);
    void takeCall(const TranscriptRecord& payload, const Origin& origin, FeedState& state);
    void takeOutput(const TranscriptRecord& payload, FeedState& state);
    void takeOversized(std::string_view line, FeedState& state);

    TranscriptParser parser_;
    /// Reads JSON that stands in a string of the line.
    TranscriptParser inner_;
};

}  // namespace orvane::TranscriptFeed
