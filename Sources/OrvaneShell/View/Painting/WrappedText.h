#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// The text in lines of at most so many columns, broken at blanks and, where a word is longer, inside it. Line ends of
/// the text stay.
std::vector<std::string> wrapped(std::string_view text, int cols);

}  // namespace orvane
