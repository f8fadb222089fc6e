#pragma once

namespace orvane::CommandStatus {

/// What the program ends with, for scripts.
inline constexpr int done = 0;
inline constexpr int refused = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int noHost = 3;

}  // namespace orvane::CommandStatus
