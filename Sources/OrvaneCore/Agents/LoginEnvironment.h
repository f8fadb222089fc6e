#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/EnvironmentList.h"

/// The variables that the user's terminal would have, which a host started from a desktop lacks. A shell is asked for
/// them once, with `LaunchShell::loginArguments(script)`.
namespace orvane::LoginEnvironment {

/// Prints the marker, which sets the variables apart from what the user's profile prints, then the variables.
inline constexpr std::string_view script = R"(printf '\0OV-ENV\0'; env -0)";

/// More output than this, in bytes, is no capture. Linux gives a process at most 6 MiB of arguments and variables.
inline constexpr std::size_t maximumOutputSize = 16 * 1024 * 1024;

/// The variables in the output of a shell that ended well, or none when it holds no marker with variables behind it.
/// What has no name, is not UTF-8 or does not end in NUL, such as a farewell of the profile, is left out.
std::optional<EnvironmentEntries> parse(std::string_view output);

/// With the folders in PATH that have the agents' programs (`ToolPathRescue::hosting`).
EnvironmentEntries rescued(const EnvironmentEntries& captured, const std::vector<std::string>& hosts);

}  // namespace orvane::LoginEnvironment
