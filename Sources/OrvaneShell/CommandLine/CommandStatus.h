#pragma once

namespace orvane::CommandStatus {

/// What the program ends with, for scripts.
inline constexpr int done = 0;
inline constexpr int refused = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int noHost = 3;
/// A wait whose session ended otherwise.
inline constexpr int endedOtherwise = 4;
/// A wait, or a program that was run, that reached its time limit; as timeout(1) has it.
inline constexpr int timedOut = 124;
/// A program could not be run at all.
inline constexpr int runFailed = 125;

}  // namespace orvane::CommandStatus
