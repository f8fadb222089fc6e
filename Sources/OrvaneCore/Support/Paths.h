#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// The name behind the last slash, where slashes at the end do not count; "/" for the root, empty for an empty path.
std::string lastPathComponent(std::string_view path);

}  // namespace orvane
