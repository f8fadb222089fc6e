#include "Platform/DetachedProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace orvane::DetachedProcess {

namespace {

using Clock = std::chrono::steady_clock;

/// Where the started program finds the pipe.
constexpr int readyDescriptor = 3;

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::expected<std::string, SystemError> readAll(int descriptor, Clock::time_point deadline) {
    std::string text;
    std::array<char, 4096> buffer;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) return std::unexpected(SystemError::of(ETIMEDOUT, "wait for the program"));
        pollfd ready{.fd = descriptor, .events = POLLIN, .revents = 0};
        if (poll(&ready, 1, static_cast<int>(left.count())) <= 0) continue;
        const ssize_t length = read(descriptor, buffer.data(), buffer.size());
        if (length > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(length));
        } else if (length == 0 || errno != EINTR) {
            return text;
        }
    }
}

}  // namespace

std::expected<std::string, SystemError> start(const std::string& executable, const std::vector<std::string>& arguments,
                                              const Environment& environment, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(SystemError::last("make a pipe"));
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, writeEnd.number(), readyDescriptor);
    posix_spawn_file_actions_addclosefrom_np(&actions, readyDescriptor + 1);
    posix_spawn_file_actions_addchdir_np(&actions, "/");
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> argumentTexts = arguments;
    std::vector<std::string> environmentTexts;
    for (const auto& [name, value] : environment)
        environmentTexts.push_back(std::string(name).append("=").append(value));
    pid_t pid = 0;
    const int failure = posix_spawn(&pid, executable.c_str(), &actions, &attributes, pointers(argumentTexts).data(),
                                    pointers(environmentTexts).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) return std::unexpected(SystemError::of(failure, "start", executable));
    writeEnd.close();
    auto word = readAll(readEnd.number(), deadline);
    waitpid(pid, nullptr, WNOHANG);  // one that failed is gone already; the others outlive us
    return word;
}

Starter Starter::find() {
    struct stat status{};
    // Anything but a pipe is somebody else's, and a free number would be given to the next file that is opened.
    if (fstat(readyDescriptor, &status) != 0 || !S_ISFIFO(status.st_mode)) return Starter({});
    fcntl(readyDescriptor, F_SETFD, FD_CLOEXEC);  // a child that held it would keep the starter waiting
    return Starter(FileDescriptor(readyDescriptor));
}

void Starter::tell(const std::string& word) {
    if (!pipe_.isOpen()) return;
    (void)!write(pipe_.number(), word.data(), word.size());
    pipe_.close();
}

}  // namespace orvane::DetachedProcess
