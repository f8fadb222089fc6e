#pragma once

#include <chrono>

#include "Support/Failure.h"

namespace orvane::benchmark {

/// What one session that floods does to others.
struct Isolation {
    double medianMilliseconds = 0;  ///< from a key to its echo on the screen
    double worstOfHundred = 0;      ///< of a hundred keys all but one come sooner
    double longestTurn = 0;         ///< ms that the main loop was not free, with what other processes took
    double longestWork = 0;         ///< ms of processor time that it worked without being free
    double megabytes = 0;           ///< resident, at the end
    double floodRate = 0;           ///< MB a second of the flood meanwhile
};

Measured<Isolation> isolation(int echoingSessions, std::chrono::milliseconds duration);

}  // namespace orvane::benchmark
