#pragma once

#include <memory>
#include <optional>

#include "Orvane/Agents/LoginShellRun.h"
#include "OrvaneCore/Agents/EnvironmentList.h"

namespace orvane {

/// Asks a login shell, once and in the background, for the variables that the user's terminal would have. A shell that
/// fails or takes too long gives none, and every launch then builds its own environment.
class LoginCapture {
 public:
    /// Begins at once. The loop and the setup must outlive it.
    LoginCapture(MainLoop& loop, const ShellSetup& setup);
    LoginCapture(const LoginCapture&) = delete;
    LoginCapture& operator=(const LoginCapture&) = delete;

    /// With the tool folders of this moment in PATH.
    std::optional<EnvironmentEntries> entries() const;

 private:
    const ShellSetup& setup_;
    std::optional<EnvironmentEntries> captured_;
    std::unique_ptr<LoginShellRun> run_;
};

}  // namespace orvane
