#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// The words of a text that somebody typed to find something: what stands between its white space.
std::vector<std::string> textWords(std::string_view text);

}  // namespace orvane
