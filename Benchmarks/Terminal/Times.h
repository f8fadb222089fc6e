#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <string_view>
#include <utility>
#include <vector>

#include "Support/Statistics.h"

namespace orvane::benchmark {

/// Of one run, in seconds.
struct Times {
    double processor = 0;  ///< of this thread alone, so that another process disturbs less
    double wall = 0;
};

inline double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <typename Work>
Times timesOfRun(Work&& work) {
    Times times;
    times.wall = timeOf<std::chrono::duration<double>>([&] {
        const double start = threadSeconds();
        std::forward<Work>(work)();
        times.processor = threadSeconds() - start;
    });
    return times;
}

/// As it comes from a pseudo-terminal that is read often enough to be full each time.
template <typename Host>
void feedInChunks(Host& host, std::string_view bytes) {
    constexpr std::size_t chunk = 64 * 1024;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(chunk, bytes.size())))
        host.feed(bytes.substr(0, chunk));
}

/// Of processor time, in millions of bytes.
inline double megabytesPerSecond(std::size_t bytes, double seconds) {
    return static_cast<double>(bytes) / seconds / 1e6;
}

}  // namespace orvane::benchmark
