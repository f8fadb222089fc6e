#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <string>

namespace orvane::benchmark {

/// A message of a service, without its line end, of `length` ASCII characters and different for each number.
inline std::string logLine(int number, std::size_t length) {
    std::string line = fmt::format(
        "2031-04-07T12:00:00.000Z INFO  worker[{}]: request served from the cache, 200, 5321 bytes in 12 ms, next is ",
        number);
    line.resize(length, 'x');
    return line;
}

}  // namespace orvane::benchmark
