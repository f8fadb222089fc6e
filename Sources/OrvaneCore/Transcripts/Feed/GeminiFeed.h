#pragma once

#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/Feed/FeedState.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::TranscriptFeed {

/// Reads the lines of Gemini CLI's transcripts. A line with the id of an earlier one takes that one's place.
class GeminiFeed {
 public:
    void take(std::string_view line, FeedState& state);

 private:
    static std::vector<Entry> answer(const TranscriptRecord& record, const Origin& origin, FeedState& state);
    void takeOversized(std::string_view line, FeedState& state);

    TranscriptParser parser_;
};

}  // namespace orvane::TranscriptFeed
