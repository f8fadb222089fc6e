#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Transcripts/TranscriptReading.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::GeminiTranscript {

/// What the records told so far, which are taken from the newest on.
struct Scan {
    std::optional<std::string> model;
    std::optional<std::int64_t> contextUsed;    ///< tokens
    std::optional<std::int64_t> contextWindow;  ///< tokens
    std::optional<AgentPhase> phase;
    bool didClearContext = false;
    std::optional<std::string> sessionTitle;
    bool needPhase = true;
    bool needUsage = true;
    bool needTitle = true;

    void take(const TranscriptRecord& record);
    bool isComplete() const { return !needPhase && !needUsage && !needTitle; }
    TranscriptReading reading() const;

 private:
    void takeGemini(const TranscriptRecord& record);
    void takeUser(const TranscriptRecord& record);
    void decide(AgentPhase newest);
};

}  // namespace orvane::GeminiTranscript
