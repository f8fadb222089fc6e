#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// A line of a transcript before it is parsed: most lines can be told to be of no use from their text.
///
/// A needle such as `"type":"user"` is found in the record's structure only: inside a text the quotes are escaped.
namespace TranscriptLine {

inline constexpr std::size_t longestParsed = 262144;  ///< bytes; a longer line is an image or the dump of a file
inline constexpr std::size_t edge = 16384;            ///< bytes that are searched at each end of a longer one

bool contains(std::string_view line, std::string_view needle);

/// Whether it stands in the first `edge` bytes, where agents write of which kind a record is.
bool headContains(std::string_view line, std::string_view needle);

/// Whether it stands in the first or the last `edge` bytes.
bool edgesContain(std::string_view line, std::string_view needle);

/// The object that the line is; none when it is malformed, another kind of value or too long.
std::optional<TranscriptRecord> parsed(TranscriptParser& parser, std::string_view line);

/// What stands between the quotes behind the first `"key":"` in the first `edge` bytes, escapes as they are; none when
/// it does not end there.
std::optional<std::string_view> scannedWord(std::string_view line, std::string_view key);

/// The string behind the first `"key":"`, also in a line that is cut or too long to be parsed. None without the quote
/// that ends it within `edge` bytes.
std::optional<std::string> scannedString(std::string_view line, std::string_view key);

}  // namespace TranscriptLine

}  // namespace orvane
