#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace orvane::fuzzing {

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, so that the fuzzer keeps the input, when what is promised does not hold.
inline void require(bool holds, const char* promise) {
    if (holds) return;
    fmt::print(stderr, "broken: {}\n", promise);
    std::abort();
}

}  // namespace orvane::fuzzing
