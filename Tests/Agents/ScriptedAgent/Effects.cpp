#include "ScriptedAgent/Effects.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

namespace orvane::scripted {
namespace {

constexpr std::chrono::seconds longestCommand{10};

std::string reason(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

Failure save(const std::string& path, const std::string& content, std::ios::openmode mode) {
    std::error_code error;
    const auto folder = std::filesystem::path(path).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    std::ofstream file(path, std::ios::binary | mode);
    file << content << std::flush;
    return file ? Failure() : reason(path);
}

/// A file that is gone as soon as it is closed: unlike a pipe it never fills up.
int inputFile(const std::string& input) {
    char path[] = "/tmp/scripted-agent-XXXXXX";
    const int file = mkostemp(path, O_CLOEXEC);
    if (file < 0) return -1;
    unlink(path);
    if (write(file, input.data(), input.size()) != static_cast<ssize_t>(input.size()) || lseek(file, 0, SEEK_SET) < 0) {
        close(file);
        return -1;
    }
    return file;
}

[[noreturn]] void becomeShell(const std::string& line, int input) {
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);  // the player blocks what it reads from a descriptor
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(input, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
    _exit(127);
}

Failure awaitEnd(pid_t child, const std::string& line) {
    const auto limit = std::chrono::steady_clock::now() + longestCommand;
    while (waitpid(child, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > limit) {
            kill(-child, SIGKILL);
            waitpid(child, nullptr, 0);
            return "does not end: " + line;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return {};
}

}  // namespace

Failure writeFile(const std::string& path, const std::string& content) {
    const std::string part = path + ".part";
    if (Failure failure = save(part, content, std::ios::trunc)) return failure;
    return rename(part.c_str(), path.c_str()) == 0 ? Failure() : reason(path);
}

Failure appendToFile(const std::string& path, const std::string& content) {
    return save(path, content, std::ios::app);
}

Failure removeFile(const std::string& path) {
    return unlink(path.c_str()) == 0 || errno == ENOENT ? Failure() : reason(path);
}

Failure runCommand(const std::string& line, const std::string& input) {
    if (line.empty()) return {};
    const int file = inputFile(input);
    if (file < 0) return reason("input of " + line);
    const pid_t child = fork();
    if (child == 0) becomeShell(line, file);
    close(file);
    return child < 0 ? reason(line) : awaitEnd(child, line);
}

}  // namespace orvane::scripted
