#pragma once

#include <cstddef>

#include "Platform/Environment.h"
#include "Support/Failure.h"

namespace orvane::benchmark {

/// The size of the workspace that a host finds when it starts.
struct SavedWorkspace {
    std::size_t projects = 0;
    std::size_t tabsPerProject = 0;
    std::size_t panesPerTab = 0;

    /// Writes it where the host of this environment reads it.
    [[nodiscard]] Measured<void> write(const Environment& environment) const;
};

}  // namespace orvane::benchmark
