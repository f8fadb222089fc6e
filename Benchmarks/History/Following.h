#pragma once

#include <cstddef>

namespace orvane::benchmark {

/// Follows one transcript of so many bytes that grows by an answer at a time, as a live session's does: prints what a
/// check reads and how long it takes, reading what it says included.
void measureFollowing(std::size_t fileSize, int checks);

}  // namespace orvane::benchmark
