#pragma once

#include "Support/Failure.h"

/// Ctrl-C and the like while other programs run for a benchmark: whoever waits fails, so that all is cleaned up on the
/// way out.
namespace orvane::benchmark::Interruption {

/// From now on SIGINT, SIGTERM and SIGHUP only make a note, and end the system call that waits.
void watch();
/// Fails once one of them has come.
[[nodiscard]] Measured<void> check();

}  // namespace orvane::benchmark::Interruption
