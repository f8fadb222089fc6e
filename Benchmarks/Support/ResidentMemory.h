#pragma once

#include <fmt/format.h>
#include <sys/types.h>
#include <unistd.h>

#include <fstream>

namespace orvane::benchmark {

/// What a process has in memory, in bytes; 0 when it is gone.
inline double residentBytes(pid_t process) {
    std::ifstream file(fmt::format("/proc/{}/statm", process));
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace orvane::benchmark
