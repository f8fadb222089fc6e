#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// The text as one word of a shell command: in single quotes, each of its own written as '\''.
std::string shellQuoted(std::string_view text);

}  // namespace orvane
