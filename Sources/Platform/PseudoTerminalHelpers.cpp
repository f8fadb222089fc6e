#include "Platform/PseudoTerminalHelpers.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "Platform/ArgumentVector.h"
#include "Platform/Reaper.h"
#include "Platform/Uninterrupted.h"

// In glibc 2.36 this header does not say that its functions are C.
extern "C" {
#include <sys/pidfd.h>
}

namespace orvane::PseudoTerminalHelpers {

namespace {

constexpr int notExecutable = 127;

struct Ends {
    FileDescriptor master;
    FileDescriptor slave;
};

winsize asSystemHasIt(const WindowSize& size) {
    return {.ws_row = size.rows, .ws_col = size.cols, .ws_xpixel = size.xPixels, .ws_ypixel = size.yPixels};
}

std::unexpected<SystemError> failure(const Command& command) {
    return std::unexpected(SystemError::last("start", command.path));
}

/// With what forkpty(3) does, and descriptors that no other child can inherit in between.
std::expected<Ends, SystemError> openEnds(const Command& command, const WindowSize& windowSize) {
    Ends ends{.master = FileDescriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)), .slave = {}};
    const int master = ends.master.number();
    if (!ends.master.isOpen() || grantpt(master) != 0 || unlockpt(master) != 0) return failure(command);
    ends.slave = FileDescriptor(ioctl(master, TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!ends.slave.isOpen()) return failure(command);
    const winsize size = asSystemHasIt(windowSize);
    if (ioctl(ends.slave.number(), TIOCSWINSZ, &size) != 0) return failure(command);
    // The line editor of the kernel then erases whole characters.
    termios settings{};
    if (tcgetattr(ends.slave.number(), &settings) == 0) {
        settings.c_iflag |= IUTF8;
        tcsetattr(ends.slave.number(), TCSANOW, &settings);
    }
    return ends;
}

void resetSignals() {
    for (int number = 1; number < NSIG; ++number)
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// The child's half: nothing but calls to the system, for other threads may have held any lock at the fork.
[[noreturn]] void become(const Command& command, int slave, char* const* arguments, char* const* environment) {
    setsid();
    ioctl(slave, TIOCSCTTY, 0);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(slave, standard);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    resetSignals();
    if (!command.workingDirectory.empty() && chdir(command.workingDirectory.c_str()) != 0) errno = 0;
    execve(command.path.c_str(), arguments, environment);
    _exit(notExecutable);
}

bool hasZeroByte(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

bool isValid(const Command& command) {
    return !hasZeroByte(command.path) && !hasZeroByte(command.workingDirectory) &&
           std::ranges::none_of(command.arguments, hasZeroByte) &&
           std::ranges::none_of(command.environment, hasZeroByte);
}

}  // namespace

std::expected<Process, SystemError> forkAndExec(const Command& command, const WindowSize& windowSize) {
    if (!isValid(command)) return std::unexpected(SystemError::of(EINVAL, "start", command.path.c_str()));
    auto ends = openEnds(command, windowSize);
    if (!ends) return std::unexpected(ends.error());
    const std::vector<char*> arguments = argumentVector(command.arguments);
    const std::vector<char*> environment = argumentVector(command.environment);
    Reaper::makeChildrenWaitable();
    const pid_t pid = fork();
    if (pid < 0) return failure(command);
    if (pid == 0) become(command, ends->slave.number(), arguments.data(), environment.data());
    FileDescriptor exit(pidfd_open(pid, 0));
    if (!exit.isOpen()) {
        const SystemError error = SystemError::last("watch", command.path);
        kill(pid, SIGKILL);
        uninterrupted([&] { return waitpid(pid, nullptr, 0); });
        return std::unexpected(error);
    }
    return Process{.pid = pid, .exit = std::move(exit), .master = std::move(ends->master)};
}

std::expected<void, SystemError> setWinSize(int masterPtyDescriptor, const WindowSize& windowSize) {
    const winsize size = asSystemHasIt(windowSize);
    if (ioctl(masterPtyDescriptor, TIOCSWINSZ, &size) == 0) return {};
    return std::unexpected(SystemError::last("set the size of", "a terminal"));
}

std::expected<int, SystemError> availableBytes(int descriptor) {
    int count = 0;
    if (ioctl(descriptor, FIONREAD, &count) == 0) return count;
    return std::unexpected(SystemError::last("look into", "a terminal"));
}

std::expected<int, SystemError> unreadInput(int masterPtyDescriptor) {
    // Only the other side knows, and only one of its own descriptors tells.
    const FileDescriptor slave(ioctl(masterPtyDescriptor, TIOCGPTPEER, O_RDONLY | O_NOCTTY | O_CLOEXEC));
    if (!slave.isOpen()) return std::unexpected(SystemError::last("look into", "a terminal"));
    return availableBytes(slave.number());
}

pid_t foregroundProcessGroup(int masterPtyDescriptor) {
    const pid_t group = tcgetpgrp(masterPtyDescriptor);
    return group >= 2 ? group : 0;
}

}  // namespace orvane::PseudoTerminalHelpers
