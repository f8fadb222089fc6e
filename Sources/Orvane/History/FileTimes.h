#pragma once

#include <sys/stat.h>

#include "OrvaneCore/Support/Date.h"

namespace orvane {

inline Date modificationTime(const struct stat& status) {
    constexpr double nanosecondsPerSecond = 1e9;
    return {static_cast<double>(status.st_mtim.tv_sec) +
            static_cast<double>(status.st_mtim.tv_nsec) / nanosecondsPerSecond};
}

}  // namespace orvane
