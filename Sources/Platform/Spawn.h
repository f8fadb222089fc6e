#pragma once

#include <expected>

#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"

namespace orvane {

/// A program that was just started, and our ends of what connects us. The pipes do not block on our side.
struct SpawnedProcess {
    pid_t pid = 0;
    FileDescriptor exit;   ///< a pidfd: readable when the program has ended
    FileDescriptor input;  ///< closed when it is not a pipe
    FileDescriptor output;
    FileDescriptor error;  ///< closed when it goes into the output
};

/// Starts the program. Errors are those of ChildProcess::start.
[[nodiscard]] std::expected<SpawnedProcess, SystemError> spawn(const ChildProcess::Options& options);

}  // namespace orvane
