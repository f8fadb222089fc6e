#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Agents/EnvironmentList.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Runs the user's git, so that no command can wait for a human or take the repository's optional locks. A value: it
/// may go to another thread. Its functions block for as long as git works, so they are not for the main thread.
class Git {
 public:
    struct Output {
        /// As a shell tells it: 0 is success, 128 + the signal for a command that was ended.
        int status = 0;
        std::string text;
        /// What git said about a failure; of a program that could not be started, why.
        std::string error;

        bool isSuccess() const { return status == 0; }
    };

    static constexpr Duration standardLimit = std::chrono::seconds(30);
    /// In bytes, of what one command may print; one that prints more is ended and counts as failed.
    static constexpr std::size_t outputLimit = std::size_t{64} << 20;

    /// With these variables, of which PATH finds git.
    explicit Git(EnvironmentEntries environment) : environment_(std::move(environment)) {}

    /// Together with what it started itself, a command that takes longer than the limit is ended and counts as failed.
    Output run(std::vector<std::string> arguments, const std::string& folder, Duration limit = standardLimit) const;

    /// "HEAD" when none is checked out; nothing outside of a repository and before its first commit.
    std::optional<std::string> currentBranch(const std::string& folder) const;

 private:
    EnvironmentEntries environment_;
};

}  // namespace orvane
