#pragma once

#include <optional>

#include "Platform/SystemError.h"

namespace orvane {

/// Why the program of a session was not started.
struct LaunchFailure {
    enum class Reason {
        commandHasNul,   ///< the command would end there
        commandTooLong,  ///< with what was added to it, see `LaunchPlan::maximumCommandSize`
        folderUnusable,  ///< its working folder is gone or cannot be entered
        notStarted,      ///< the system gave no terminal or no process
    };

    Reason reason = Reason::notStarted;
    /// What the system said, where it was asked.
    std::optional<SystemError> error;
};

}  // namespace orvane
