#include "Platform/ProcessGroup.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace orvane::ProcessGroup {

namespace {

constexpr pid_t lowestGroup = 2;

}  // namespace

pid_t of(pid_t process) {
    if (process < lowestGroup) return 0;
    const pid_t group = getpgid(process);
    return group >= lowestGroup ? group : 0;
}

void signal(pid_t group, int signal) {
    if (group < lowestGroup) return;
    kill(-group, signal);
    if (signal == SIGTERM) kill(-group, SIGCONT);
}

bool isAlive(pid_t group) {
    return group >= lowestGroup && (kill(-group, 0) == 0 || errno == EPERM);
}

}  // namespace orvane::ProcessGroup
