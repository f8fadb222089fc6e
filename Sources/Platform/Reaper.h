#pragma once

#include <sys/types.h>

#include "Platform/ExitStatus.h"
#include "Platform/FileDescriptor.h"
#include "Platform/MainLoop.h"

/// Waiting for children by the descriptor that watches them (a pidfd).
namespace orvane::Reaper {

/// With SIGCHLD ignored, which a program inherits from whoever started it, the system throws exit statuses away: to be
/// called before a child is started.
void makeChildrenWaitable();

/// How the child ended, and unless `flags` has WNOWAIT it is reaped. Exited with 255 when somebody else has reaped it.
ExitStatus waitFor(const FileDescriptor& exit, int flags);

/// Reaps a child whose owner is gone, once it ends. Main thread only; the loop keeps watching until then.
void reapLater(MainLoop& loop, pid_t pid, FileDescriptor exit);

}  // namespace orvane::Reaper
