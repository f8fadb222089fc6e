#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// The text as one word of a shell command: in single quotes, each of its own written as '\''.
std::string shellQuoted(std::string_view text);

/// The words of a command line without their quotes. Nothing is expanded, operators are letters like others, and a
/// quote that is never closed goes to the end.
std::vector<std::string> shellWords(std::string_view command);

}  // namespace orvane
