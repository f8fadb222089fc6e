#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

/// How the texts of transcripts are cleaned for display. Characters are grapheme clusters.
namespace orvane::TranscriptText {

/// Most characters that are shown of a message, and of a tool's target or detail.
inline constexpr std::size_t maximumMessage = 24000;
inline constexpr std::size_t maximumDetail = 300;

/// A message without white space at its ends, at most `maximumMessage` characters; "…" tells that it was cut.
std::string message(std::string_view text);

/// Runs of blanks, tabs and line ends become one blank each, none at the ends. Other white space stays: it may be part
/// of a file's name.
std::string oneLine(std::string_view text);

/// The first `maximumDetail` characters of `oneLine`.
std::string detail(std::string_view text);

/// Reads "2026-11-21T01:45:22…" by the positions of its digits; what separates them, the fraction and the zone are not
/// looked at, and it is taken as UTC.
std::optional<Date> timestamp(std::string_view text);

/// A plain string, or the `text` of the elements that have one.
std::string joined(const TranscriptRecord& content, std::string_view separator);

/// What stands between the first `open` and the next `close`; none when one of them is missing.
std::optional<std::string_view> between(std::string_view text, std::string_view open, std::string_view close);

}  // namespace orvane::TranscriptText
