#pragma once

#include <sys/types.h>

namespace orvane::ProcessGroup {

/// The group of a process; none (0) when the process is gone or has no group that may be signalled. Groups 0 and 1 are
/// never given, so a stale answer cannot address our own group or that of init.
pid_t of(pid_t process);

/// Signals every process of the group. A SIGTERM is followed by SIGCONT, so that stopped jobs can act on it.
void signal(pid_t group, int signal);

/// Whether the group still has a process that runs, one of another user included. One that has ended and waits to be
/// reaped counts no more: orphans are the init process's to reap, which some containers do late or never.
bool isAlive(pid_t group);

}  // namespace orvane::ProcessGroup
