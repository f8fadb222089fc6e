#include "Support/ProcessActivity.h"

#include <fmt/format.h>

#include <ctime>
#include <filesystem>
#include <fstream>

namespace orvane::benchmark {

namespace {

/// Adds the counters of one thread, from its status file (proc(5)). Whether both were there.
bool addThread(const std::string& folder, ProcessActivity& activity) {
    std::ifstream status(folder + "/status");
    int found = 0;
    std::string word;
    std::int64_t count = 0;
    while (status >> word) {
        if (word == "voluntary_ctxt_switches:" && status >> count) {
            activity.voluntarySwitches += count;
            ++found;
        } else if (word == "nonvoluntary_ctxt_switches:" && status >> count) {
            activity.involuntarySwitches += count;
            ++found;
        }
    }
    return found == 2;
}

}  // namespace

ProcessActivity ProcessActivity::operator-(const ProcessActivity& earlier) const {
    return {.voluntarySwitches = voluntarySwitches - earlier.voluntarySwitches,
            .involuntarySwitches = involuntarySwitches - earlier.involuntarySwitches,
            .processorTime = processorTime - earlier.processorTime};
}

Measured<ProcessActivity> ProcessActivity::of(pid_t process) {
    ProcessActivity activity;
    std::error_code error;
    const std::filesystem::directory_iterator threads(fmt::format("/proc/{}/task", process), error);
    if (error) return Failure(fmt::format("process {} is gone: {}", process, error.message()));
    for (const auto& thread : threads) {
        if (!addThread(thread.path().string(), activity)) {
            return Failure(fmt::format("{} does not tell of context switches", thread.path().string()));
        }
    }
    // The stat files count in ticks of 10 ms, of which an idle process should not fill one.
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        return Failure(fmt::format("the processor time of process {} cannot be read", process));
    }
    activity.processorTime = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    return activity;
}

}  // namespace orvane::benchmark
