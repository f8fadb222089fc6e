#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::FileUrl {

inline constexpr std::size_t maximumLength = 8192;  ///< in bytes

/// The path that a file URL names on this computer, with its percent escapes decoded. The host may be missing, empty,
/// "localhost" or `hostName`. Nothing for other hosts (a shell that runs on another computer says where it is there),
/// other schemes, relative paths, control characters and longer texts.
std::optional<std::string> localPath(std::string_view url, std::string_view hostName);

}  // namespace orvane::FileUrl
