#pragma once

#include <span>
#include <string_view>

#include "OrvaneCore/Transcripts/Form/NormalizedLines.h"

namespace orvane::TranscriptForm {

NormalizedLines claudeForm(std::span<const std::string_view> lines);
NormalizedLines codexForm(std::span<const std::string_view> lines);
NormalizedLines geminiForm(std::span<const std::string_view> lines);

}  // namespace orvane::TranscriptForm
