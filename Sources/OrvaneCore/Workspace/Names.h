#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// Without the ASCII white space and line ends at both ends.
std::string_view trimmed(std::string_view text);

/// The name behind the last slash, where slashes at the end do not count; "/" for the root, empty for an empty path.
std::string lastPathComponent(std::string_view path);

}  // namespace orvane
