#include "Idle/BareHolder.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <vector>

namespace orvane::benchmark {

namespace {

constexpr WindowSize size{.rows = 37, .cols = 100};

std::vector<PseudoTerminalHelpers::Process> startPrograms(const PseudoTerminalHelpers::Command& command, int count) {
    std::vector<PseudoTerminalHelpers::Process> programs;
    programs.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        auto program = PseudoTerminalHelpers::forkAndExec(command, size);
        if (!program) _exit(1);
        programs.push_back(*std::move(program));
    }
    return programs;
}

/// The child: a word starts the programs, the end of the control socket ends it.
[[noreturn]] void hold(int control, const PseudoTerminalHelpers::Command& command, int count) {
    char word = 0;
    if (read(control, &word, 1) != 1) _exit(0);
    const auto programs = startPrograms(command, count);
    if (write(control, &word, 1) != 1) _exit(1);
    std::vector<pollfd> watched{{.fd = control, .events = POLLIN, .revents = 0}};
    for (const auto& program : programs)
        watched.push_back({.fd = program.master.number(), .events = POLLIN, .revents = 0});
    std::array<char, 4096> buffer;
    while (true) {
        poll(watched.data(), watched.size(), -1);
        if (watched.front().revents != 0) _exit(0);
        for (pollfd& each : watched) {
            if (each.revents != 0 && read(each.fd, buffer.data(), buffer.size()) <= 0) each.fd = -1;
        }
    }
}

}  // namespace

Measured<std::unique_ptr<BareHolder>> BareHolder::fork(const PseudoTerminalHelpers::Command& command, int count) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return Failure(SystemError::last("make a socket").message());
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    const pid_t pid = ::fork();
    if (pid < 0) return Failure(SystemError::last("fork").message());
    if (pid == 0) {
        ours.close();
        hold(theirs.number(), command, count);
    }
    return std::unique_ptr<BareHolder>(new BareHolder(pid, std::move(ours)));
}

BareHolder::~BareHolder() {
    control_.close();
    waitpid(pid_, nullptr, 0);
}

Measured<void> BareHolder::startAll() {
    char word = 's';
    if (write(control_.number(), &word, 1) == 1 && read(control_.number(), &word, 1) == 1) return {};
    return Failure("the bare process cannot start its programs");
}

}  // namespace orvane::benchmark
