#pragma once

#include <dirent.h>

#include <cstddef>
#include <memory>

namespace orvane {

/// How many descriptors this process has open, give or take a constant.
inline std::size_t openDescriptors() {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/proc/self/fd"), closedir);
    std::size_t count = 0;
    while (readdir(folder.get()) != nullptr)
        ++count;
    return count;
}

}  // namespace orvane
