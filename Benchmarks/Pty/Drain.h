#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "Support/Failure.h"

namespace orvane::benchmark {

/// A program that writes without end or much, on a pseudo-terminal.
struct Flood {
    std::string name;
    std::vector<std::string> command;  ///< for /bin/sh -c
};

enum class Drainer {
    bareRead,      ///< read(2) on the master and nothing else
    libvterm,      ///< the same, and libvterm takes it
    localProcess,  ///< `LocalProcess` into `Terminal`
};

/// MB a second that come through, of at most `bytes` and in at most `limit`.
Measured<double> drained(const Flood& flood, Drainer drainer, std::size_t bytes, std::chrono::seconds limit);

}  // namespace orvane::benchmark
