#pragma once

#include <cstddef>

#include "Support/LogLine.h"
#include "Terminal/OrvaneHost.h"

namespace orvane::benchmark {

inline constexpr Geometry wideGeometry{.cols = 200, .rows = 50};
inline constexpr int longScrollback = 400'000;

/// So many lines of a log, each of `length` characters.
inline void feedLog(OrvaneHost& host, int lines, std::size_t length) {
    for (int number = 0; number < lines; ++number)
        host.feed(logLine(number, length) + "\r\n");
}

}  // namespace orvane::benchmark
