#pragma once

#include <sys/types.h>

#include <memory>

#include "Platform/FileDescriptor.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "Support/Failure.h"

namespace orvane::benchmark {

/// The least that holding programs on pseudo-terminals can cost: a process that starts them, reads what they write and
/// throws it away. It ends with this object, and the programs with their terminals.
class BareHolder {
 public:
    /// To be called while this process has one thread. Nothing is started yet.
    [[nodiscard]] static Measured<std::unique_ptr<BareHolder>> fork(const PseudoTerminalHelpers::Command& command,
                                                                    int count);
    BareHolder(const BareHolder&) = delete;
    BareHolder& operator=(const BareHolder&) = delete;
    ~BareHolder();

    pid_t pid() const { return pid_; }

    /// Returns when all programs are started.
    [[nodiscard]] Measured<void> startAll();

 private:
    BareHolder(pid_t pid, FileDescriptor control) : pid_(pid), control_(std::move(control)) {}

    pid_t pid_;
    FileDescriptor control_;
};

}  // namespace orvane::benchmark
