#pragma once

#include <sched.h>
#include <sys/types.h>

#include <vector>

#include "Platform/SystemError.h"
#include "Support/Failure.h"

/// Where processes run. Waking a sleeping processor can cost ten times what a context switch does, so two peers are
/// compared in the same places or not at all; left to itself the system would put one here and the other there.
namespace orvane::benchmark::Processors {

/// The numbers of the processors that this process may use.
inline std::vector<int> allowed() {
    cpu_set_t set;
    CPU_ZERO(&set);
    std::vector<int> numbers;
    if (sched_getaffinity(0, sizeof set, &set) != 0) return numbers;
    for (int number = 0; number < CPU_SETSIZE; ++number) {
        if (CPU_ISSET(number, &set)) numbers.push_back(number);
    }
    return numbers;
}

/// Keeps the first thread of a process, 0 for the calling one, on these processors.
[[nodiscard]] inline Measured<void> keep(pid_t process, const std::vector<int>& on) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (const int number : on)
        CPU_SET(number, &set);
    if (sched_setaffinity(process, sizeof set, &set) == 0) return {};
    return Failure(SystemError::last("choose the processor of a process").message());
}

}  // namespace orvane::benchmark::Processors
