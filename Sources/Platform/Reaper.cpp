#include "Platform/Reaper.h"

#include <sys/wait.h>

#include <csignal>
#include <map>
#include <utility>

#include "Platform/Uninterrupted.h"

namespace orvane::Reaper {

namespace {

/// Children whose owner is gone, by process id. They are kept here rather than by the task that reaps them, which the
/// loop owns: the two would keep each other.
struct Forgotten {
    FileDescriptor exit;
    Registration watch;
};

std::map<pid_t, Forgotten>& forgotten() {
    static std::map<pid_t, Forgotten> children;
    return children;
}

}  // namespace

void makeChildrenWaitable() {
    struct sigaction action{};
    if (sigaction(SIGCHLD, nullptr, &action) != 0) return;
    if (action.sa_handler != SIG_IGN && (action.sa_flags & SA_NOCLDWAIT) == 0) return;
    action.sa_flags &= ~SA_NOCLDWAIT;
    if (action.sa_handler == SIG_IGN) action.sa_handler = SIG_DFL;
    sigaction(SIGCHLD, &action, nullptr);
}

ExitStatus waitFor(const FileDescriptor& exit, int flags) {
    siginfo_t info{};
    const int result =
        uninterrupted([&] { return waitid(P_PIDFD, static_cast<id_t>(exit.number()), &info, WEXITED | flags); });
    // Somebody else reaped our child: how it ended is not known, only that this is no success.
    if (result != 0) return {ExitStatus::Exited{255}};
    return ExitStatus::of(info);
}

void reapLater(MainLoop& loop, pid_t pid, FileDescriptor exit) {
    const int descriptor = exit.number();
    Forgotten& child = forgotten()[pid];
    child.exit = std::move(exit);
    child.watch = loop.watch(descriptor, Readiness::readable, [pid] {
        const auto found = forgotten().find(pid);
        const Forgotten ended = std::move(found->second);
        forgotten().erase(found);
        waitFor(ended.exit, 0);
    });
}

}  // namespace orvane::Reaper
