#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Paths.h"

/// The shell that runs the commands of sessions and is asked about the user's environment. Commands are written for zsh
/// and bash, which read them alike.
namespace orvane::LaunchShell {

inline constexpr std::string_view preferred = "/bin/zsh";
inline constexpr std::string_view lastResort = "/bin/bash";

/// The preferred shell where it can be run; else the user's login shell (a path) if it is a zsh or bash that can be;
/// else the last resort.
std::string choose(const std::string& loginShell, const PathTest& isExecutable);

/// The arguments with which a shell runs a script in the environment that the user's terminal would have.
std::vector<std::string> loginArguments(std::string script);

}  // namespace orvane::LaunchShell
