#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvane {

/// A question about a path that only the file system can answer, such as whether a file may be run.
using PathTest = std::function<bool(const std::string& path)>;

/// A path with its symbolic links resolved, which only the file system can tell; the path itself where that fails.
using PathResolution = std::function<std::string(const std::string& path)>;

/// The name behind the last slash, where slashes at the end do not count; "/" for the root, empty for an empty path.
std::string lastPathComponent(std::string_view path);

/// A path below a folder, with one slash between them however the folder ends.
std::string joinedPath(std::string_view folder, std::string_view rest);

}  // namespace orvane
