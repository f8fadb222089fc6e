#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Platform/SystemError.h"

namespace orvane {

/// The search path of a process without PATH.
inline constexpr std::string_view defaultSearchPath = "/usr/bin:/bin";

/// Finds the program as execvp(3) would for a process that works in `folder` (empty: our own) and has this PATH. A name
/// with a slash is returned as it is, and a result found through a relative entry is relative to `folder`. The error is
/// EACCES when only files that may not be run were found, else ENOENT; its text is "start NAME".
[[nodiscard]] std::expected<std::string, SystemError> findProgram(const std::string& name, std::string_view searchPath,
                                                                  const std::string& folder = {});

}  // namespace orvane
