#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// What a tool acts on, for people.
namespace ToolTarget {

inline constexpr std::size_t longest = 300;  ///< characters

/// The first of the file, pattern, address, command and so on that its arguments name, as one row; empty when they name
/// none.
std::string of(const TranscriptRecord& arguments);

/// The text with its runs of blanks and line ends made one blank, cut at `longest`.
std::string oneLine(std::string_view text);

}  // namespace ToolTarget

}  // namespace orvane
