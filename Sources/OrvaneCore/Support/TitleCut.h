#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

/// A text as one line of at most `limit` characters: runs of white space are one blank, and what is too long is cut
/// behind a word and ends in "…". A single word that is too long is cut where it must be.
std::string titleCut(std::string_view text, std::size_t limit);

}  // namespace orvane
