#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::TranscriptForm {

/// The content of a Gemini record: a text, or parts that hold texts, calls of tools and their results.
namespace GeminiContent {

/// What was said: without thoughts and without the parts that the CLI puts beside a person's words, which stand in
/// tags.
std::string text(const TranscriptRecord& content);

/// What two writings of one message have in common: its kind, text and calls. Empty for what says and calls nothing.
std::string likeness(const TranscriptRecord& record);

/// A record of type `user` or `gemini` with its content as a text and its calls beside it, as one line of JSON; none
/// when it is so already.
std::optional<std::string> flattened(const TranscriptRecord& record);

}  // namespace GeminiContent

}  // namespace orvane::TranscriptForm
