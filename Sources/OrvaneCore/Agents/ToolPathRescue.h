#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/EnvironmentList.h"
#include "OrvaneCore/Support/Paths.h"

/// Finds the folders of the agents' programs that the user's PATH lacks: version managers often set it up in a place
/// that only some shells read.
namespace orvane::ToolPathRescue {

inline constexpr std::array<std::string_view, 3> binaries = {"claude", "codex", "gemini"};

/// The names in a folder of a version manager, such as "v22.3.0"; none when there is no such folder.
using VersionLister = std::function<std::vector<std::string>(const std::string& folder)>;

/// Where the programs may be, the likeliest first; of each version manager the newest version first.
std::vector<std::string> candidates(const std::string& home, const VersionLister& versions);

/// The candidates, each once, in which at least one of `binaries` can be run.
std::vector<std::string> hosting(const std::vector<std::string>& candidates, const PathTest& isExecutable);

/// The hosts that are not among the parts of a PATH value.
std::vector<std::string> missing(const std::vector<std::string>& hosts, std::string_view path);

/// Adds folders at the end of PATH, which begins with the system's own where it was not set.
EnvironmentEntries appending(const std::vector<std::string>& folders, EnvironmentEntries environment);

/// What a script begins with so that the folders, if missing, come to the end of its PATH. Ends with a blank; empty
/// without folders.
std::string shellPrelude(const std::vector<std::string>& folders);

}  // namespace orvane::ToolPathRescue
