#pragma once

#include <expected>
#include <string>
#include <vector>

#include "Platform/Environment.h"
#include "Platform/SystemError.h"

namespace orvane::DetachedProcess {

/// The descriptor on which the started program says that it is ready.
inline constexpr int readyDescriptor = 3;

/// Starts a program that outlives its starter: in a session of its own, in the root folder, with the null device as
/// its three standard streams. Blocks until the program has written to `readyDescriptor` and closed it, and returns
/// what it wrote; an empty text means that it ended without a word.
std::expected<std::string, SystemError> start(const std::string& executable, const std::vector<std::string>& arguments,
                                              const Environment& environment);

/// The started program's side: writes the word and closes the descriptor. Does nothing when nobody waits.
void tellReady(const std::string& word);

}  // namespace orvane::DetachedProcess
