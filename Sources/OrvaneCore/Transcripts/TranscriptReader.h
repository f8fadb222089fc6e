#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"
#include "OrvaneCore/Transcripts/TranscriptReading.h"

namespace orvane {

/// What transcripts tell, as the agents of today write them.
namespace TranscriptReader {

/// From the lines at the end of a file, in its order; none when they tell nothing.
std::optional<TranscriptReading> read(TranscriptProvider provider, std::span<const std::string_view> lines);

}  // namespace TranscriptReader

}  // namespace orvane
