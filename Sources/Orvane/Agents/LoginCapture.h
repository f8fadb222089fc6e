#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OrvaneCore/Agents/EnvironmentList.h"
#include "Platform/ChildProcess.h"
#include "Platform/Environment.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Asks a login shell, once and in the background, for the variables that the user's terminal would have. A shell that
/// fails or takes too long gives none, and every launch then builds its own environment.
class LoginCapture {
 public:
    static constexpr Duration limit = std::chrono::seconds(10);

    /// Begins at once. `toolFolders` join the PATH that is captured. The loop must outlive it.
    LoginCapture(MainLoop& loop, const std::string& shell, const Environment& environment,
                 std::vector<std::string> toolFolders);
    LoginCapture(const LoginCapture&) = delete;
    LoginCapture& operator=(const LoginCapture&) = delete;
    /// A shell that is still at it is killed.
    ~LoginCapture() { stop(); }

    const std::optional<EnvironmentEntries>& entries() const { return entries_; }

 private:
    void finish(const ExitStatus& status);
    void stop();

    std::vector<std::string> toolFolders_;
    std::string output_;
    std::optional<EnvironmentEntries> entries_;
    std::unique_ptr<ChildProcess> shell_;
    Registration timeout_;
};

}  // namespace orvane
