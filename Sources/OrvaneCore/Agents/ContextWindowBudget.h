#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane::ContextWindowBudget {

/// How full the context of a conversation is before its agent has to make room, 0 to 1. Both counts are tokens.
double usedFraction(std::int64_t usedTokens, std::int64_t reportedWindow, TranscriptProvider provider);

/// The window of a model in tokens: as its agent reports it, else by the model's name and by what was in it already;
/// none when nobody knows.
std::optional<std::int64_t> window(TranscriptProvider provider, std::string_view model,
                                   std::optional<std::int64_t> reported, std::int64_t usedTokens);

}  // namespace orvane::ContextWindowBudget
