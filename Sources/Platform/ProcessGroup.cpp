#include "Platform/ProcessGroup.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "Platform/Files.h"

namespace orvane::ProcessGroup {

namespace {

constexpr pid_t lowestGroup = 2;
/// In bytes, of a line of /proc/PID/stat: some fifty numbers and a name of at most 64 bytes.
constexpr std::size_t statLimit = 4096;

/// proc(5): "PID (NAME) STATE PARENT GROUP ...", where NAME may hold blanks and brackets.
bool isRunningIn(pid_t group, std::string_view stat) {
    const auto nameEnd = stat.rfind(") ");
    if (nameEnd == std::string_view::npos || nameEnd + 2 >= stat.size()) return false;
    const char state = stat[nameEnd + 2];
    const auto parentAt = nameEnd + 4;
    const auto groupAt = stat.find(' ', parentAt);
    if (state == 'Z' || state == 'X' || groupAt == std::string_view::npos) return false;
    pid_t found = 0;
    std::from_chars(stat.data() + groupAt + 1, stat.data() + stat.size(), found);
    return found == group;
}

bool hasRunningProcess(pid_t group) {
    std::error_code error;
    std::filesystem::directory_iterator entry("/proc", error);
    // Without a look at the processes the answer of kill(2) stands.
    if (error) return true;
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const auto stat = readWholeFile("/proc/" + name + "/stat", statLimit);
        if (stat && isRunningIn(group, *stat)) return true;
    }
    return false;
}

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
    if (group < lowestGroup) return false;
    if (kill(-group, 0) != 0) return errno == EPERM;
    return hasRunningProcess(group);
}

}  // namespace orvane::ProcessGroup
