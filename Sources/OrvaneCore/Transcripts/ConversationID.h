#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// The id by which an agent takes up a conversation again, as its transcript has it: of Claude the file's name, of the
/// others what the first lines tell. None while they do not tell it.
std::optional<std::string> conversationID(TranscriptProvider provider, const std::string& path,
                                          std::span<const std::string_view> headLines);

}  // namespace orvane
