#pragma once

#include <string>

#include "Platform/Environment.h"

namespace orvane::benchmark {

/// A home for one host: fresh data, configuration and runtime folders, removed with all they hold. Nothing of the
/// user's own is seen or touched.
class TemporaryEnvironment {
 public:
    /// Ends the process when there is no place for a folder: nothing can be measured then.
    TemporaryEnvironment();
    TemporaryEnvironment(const TemporaryEnvironment&) = delete;
    TemporaryEnvironment& operator=(const TemporaryEnvironment&) = delete;
    ~TemporaryEnvironment();

    const Environment& variables() const { return variables_; }
    const std::string& folder() const { return folder_; }

 private:
    std::string folder_;
    Environment variables_;
};

}  // namespace orvane::benchmark
