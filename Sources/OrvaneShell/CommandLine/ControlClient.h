#pragma once

#include <sys/types.h>

#include <expected>
#include <string>

#include "Platform/Environment.h"
#include "Platform/LineClient.h"

namespace orvane {

/// Whether a command may start the host when none runs.
enum class HostStart { never, ifNeeded };

/// The way from a command to the host of this user.
namespace ControlClient {

struct Failure {
    /// No host runs, as opposed to one that cannot be reached or started.
    bool isAbsent = false;
    /// Empty when a host was started, or is starting, and never came up.
    std::string message;
};

/// Connects to the host that the instance lock names. A host that is just starting, or that is making its socket
/// anew, is waited for.
std::expected<LineClient, Failure> connect(const Environment& environment, HostStart start);

/// Waits until the host that was told to stop has let go of everything, its state file included, so that another may
/// start. False when it takes longer than a stopping host may.
bool waitForEnd(const Environment& environment, pid_t host);

}  // namespace ControlClient

}  // namespace orvane
