#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>

#include "Support/Failure.h"

namespace orvane::benchmark {

/// What a process has done so far, all its threads together.
struct ProcessActivity {
    /// Times a thread gave the processor up because it had to wait: each follows a wake-up.
    std::int64_t voluntarySwitches = 0;
    /// Times it was taken away in the middle of work.
    std::int64_t involuntarySwitches = 0;
    std::chrono::nanoseconds processorTime{};

    ProcessActivity operator-(const ProcessActivity& earlier) const;

    /// Fails when the process is gone or the system does not tell.
    [[nodiscard]] static Measured<ProcessActivity> of(pid_t process);
};

}  // namespace orvane::benchmark
