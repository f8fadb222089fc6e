#pragma once

#include <cstdint>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane::ContextWindowBudget {

/// How full the context of a conversation is before its agent has to make room, 0 to 1. Both counts are tokens.
double usedFraction(std::int64_t usedTokens, std::int64_t reportedWindow, TranscriptProvider provider);

}  // namespace orvane::ContextWindowBudget
