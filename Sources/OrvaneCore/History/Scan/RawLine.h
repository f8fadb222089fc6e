#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Date.h"

/// Looks into lines of transcripts without parsing them: for lines that are large, cut, or of interest for one word.
namespace orvane::RawLine {

/// The text behind the first `opening`, which ends with the quote that begins the text, such as `"cwd":"`. A text that
/// the line cuts off is given as far as it goes.
std::optional<std::string> text(std::string_view line, std::string_view opening);
/// The same as it stands in the line, with its escapes.
std::optional<std::string_view> escapedText(std::string_view line, std::string_view opening);

/// The first `"timestamp":"…"`.
std::optional<Date> timestamp(std::string_view line);

}  // namespace orvane::RawLine
