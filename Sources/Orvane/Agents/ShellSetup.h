#pragma once

#include <string>
#include <vector>

#include "Platform/Environment.h"

namespace orvane {

/// What everything that runs in the user's shell is started with.
struct ShellSetup {
    /// The host's own; what a terminal would add comes from `LoginCapture` or the shell itself.
    Environment environment;
    /// The path of a zsh or bash.
    std::string shell;
    std::string locale;
    /// Where agents' programs are that the user's PATH may lack. Changes when one is installed.
    std::vector<std::string> toolFolders;

    /// Looks at this computer. Quick, but reads folders.
    static ShellSetup of(Environment environment);
    /// From any thread.
    static std::vector<std::string> findToolFolders(const Environment& environment);
};

}  // namespace orvane
