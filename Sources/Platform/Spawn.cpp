#include "Platform/Spawn.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "Platform/ArgumentVector.h"
#include "Platform/Files.h"
#include "Platform/ProgramLookup.h"
#include "Platform/Reaper.h"
#include "Platform/Uninterrupted.h"

// In glibc 2.36 this header does not say that its functions are C.
extern "C" {
#include <sys/pidfd.h>
}

namespace orvane {

namespace {

using Options = ChildProcess::Options;
using Done = std::expected<void, SystemError>;

/// A new descriptor, moved above the standard three: those are what the child's are copied over.
FileDescriptor aboveStandard(int number) {
    if (number > STDERR_FILENO || number < 0) return FileDescriptor(number);
    const FileDescriptor low(number);
    return FileDescriptor(fcntl(low.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

struct Pipe {
    FileDescriptor ours;
    FileDescriptor childs;
};

enum class Direction { toChild, fromChild };

std::expected<Pipe, SystemError> makePipe(Direction direction, const std::string& program) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(SystemError::last("start", program));
    FileDescriptor readEnd = aboveStandard(ends[0]);
    FileDescriptor writeEnd = aboveStandard(ends[1]);
    Pipe pipe = direction == Direction::toChild ? Pipe{.ours = std::move(writeEnd), .childs = std::move(readEnd)}
                                                : Pipe{.ours = std::move(readEnd), .childs = std::move(writeEnd)};
    // The two ends are separate open files, so the child's still blocks, as programs expect.
    if (!pipe.childs.isOpen() || !pipe.ours.isOpen() || fcntl(pipe.ours.number(), F_SETFL, O_NONBLOCK) != 0)
        return std::unexpected(SystemError::last("start", program));
    return pipe;
}

/// What the child does between its birth and the program. The calls that fill it fail for lack of memory only; the
/// first failure is kept.
class FileActions {
 public:
    FileActions() { error_ = posix_spawn_file_actions_init(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    void duplicate(int from, int to) { note(posix_spawn_file_actions_adddup2(&actions_, from, to)); }
    void openNull(int to) { note(posix_spawn_file_actions_addopen(&actions_, to, "/dev/null", O_RDONLY, 0)); }
    void changeFolder(int folder) { note(posix_spawn_file_actions_addfchdir_np(&actions_, folder)); }
    void closeFrom(int first) { note(posix_spawn_file_actions_addclosefrom_np(&actions_, first)); }

    int error() const { return error_; }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
    void note(int error) {
        if (error_ == 0) error_ = error;
    }

    posix_spawn_file_actions_t actions_{};
    int error_ = 0;
};

class Attributes {
 public:
    explicit Attributes(ChildProcess::Group group) {
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        // Not sigfillset: it leaves out the two signals of the thread library, which the child would then ignore.
        std::memset(&all, 0xFF, sizeof all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (group == ChildProcess::Group::own) flags |= POSIX_SPAWN_SETPGROUP;  // group 0: the child's own number
        if (group == ChildProcess::Group::ownSession) flags |= POSIX_SPAWN_SETSID;
        posix_spawnattr_setflags(&attributes_, flags);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const { return &attributes_; }

 private:
    posix_spawnattr_t attributes_{};
};

bool hasZeroByte(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

/// Up to a zero byte, where the system would cut it.
std::string_view shown(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

Done check(const Options& options) {
    const auto invalid = [](const std::string& what) {
        return std::unexpected(SystemError::of(EINVAL, "start", what));
    };
    if (options.arguments.empty() || options.arguments.front().empty()) return invalid("a program without a name");
    const std::string_view program = shown(options.arguments.front());
    if (hasZeroByte(options.workingDirectory)) return invalid(fmt::format("{} in a folder with a zero byte", program));
    for (const std::string& argument : options.arguments) {
        if (hasZeroByte(argument)) return invalid(fmt::format("{} with a zero byte in an argument", program));
    }
    if (!options.environment) return {};
    for (const auto& [name, value] : *options.environment) {
        if (name.empty() || name.find('=') != std::string::npos || hasZeroByte(name) || hasZeroByte(value))
            return invalid(fmt::format("{} with the variable \"{}\"", program, shown(name)));
    }
    return {};
}

/// The variables as "NAME=value".
std::vector<std::string> assignments(const std::map<std::string, std::string>& environment) {
    std::vector<std::string> list;
    list.reserve(environment.size());
    for (const auto& [name, value] : environment)
        list.push_back(fmt::format("{}={}", name, value));
    return list;
}

std::string searchPath(const Options& options) {
    if (!options.environment) {
        const char* path = std::getenv("PATH");
        return path != nullptr ? path : std::string(defaultSearchPath);
    }
    const auto found = options.environment->find("PATH");
    return found != options.environment->end() ? found->second : std::string(defaultSearchPath);
}

/// The child runs already but its end could not be watched (no descriptor left): it is taken back.
SystemError abort(pid_t pid, const std::string& program) {
    const SystemError error = SystemError::last("watch", program);
    kill(pid, SIGKILL);
    uninterrupted([&] { return waitpid(pid, nullptr, 0); });
    return error;
}

/// The pipes of one child; those it does not want stay closed.
struct Pipes {
    Pipe input;
    Pipe output;
    Pipe error;
};

std::expected<Pipes, SystemError> connect(const Options& options, FileActions& actions) {
    const std::string& name = options.arguments.front();
    Pipes pipes;
    if (options.input == ChildProcess::Input::pipe) {
        auto made = makePipe(Direction::toChild, name);
        if (!made) return std::unexpected(made.error());
        pipes.input = *std::move(made);
        actions.duplicate(pipes.input.childs.number(), STDIN_FILENO);
    } else {
        actions.openNull(STDIN_FILENO);
    }
    auto output = makePipe(Direction::fromChild, name);
    if (!output) return std::unexpected(output.error());
    pipes.output = *std::move(output);
    actions.duplicate(pipes.output.childs.number(), STDOUT_FILENO);
    if (options.errorOutput == ChildProcess::ErrorOutput::intoOutput) {
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
        return pipes;
    }
    auto error = makePipe(Direction::fromChild, name);
    if (!error) return std::unexpected(error.error());
    pipes.error = *std::move(error);
    actions.duplicate(pipes.error.childs.number(), STDERR_FILENO);
    return pipes;
}

std::expected<pid_t, SystemError> launch(const Options& options, const std::string& program,
                                         const FileActions& actions) {
    const std::vector<std::string> variables =
        options.environment ? assignments(*options.environment) : std::vector<std::string>();
    const std::vector<char*> environment = argumentVector(variables);
    const std::vector<char*> arguments = argumentVector(options.arguments);
    const Attributes attributes(options.group);
    Reaper::makeChildrenWaitable();
    pid_t pid = 0;
    int failure = actions.error();
    if (failure == 0) {
        failure = posix_spawn(&pid, program.c_str(), actions.get(), attributes.get(), arguments.data(),
                              options.environment ? environment.data() : environ);
    }
    if (failure != 0) return std::unexpected(SystemError::of(failure, "start", options.arguments.front()));
    return pid;
}

}  // namespace

std::expected<SpawnedProcess, SystemError> spawn(const Options& options) {
    if (const auto checked = check(options); !checked) return std::unexpected(checked.error());
    FileActions actions;
    FileDescriptor folder;
    if (!options.workingDirectory.empty()) {
        // Opened here rather than by path in the child, so that a failure is told apart from the program's.
        auto opened = openFolder(options.workingDirectory);
        if (!opened) return std::unexpected(opened.error());
        folder = *std::move(opened);
        actions.changeFolder(folder.number());
    }
    const std::string& name = options.arguments.front();
    const auto program = findProgram(name, searchPath(options), options.workingDirectory);
    if (!program) return std::unexpected(program.error());
    auto pipes = connect(options, actions);
    if (!pipes) return std::unexpected(pipes.error());
    actions.closeFrom(STDERR_FILENO + 1);

    const auto pid = launch(options, *program, actions);
    if (!pid) return std::unexpected(pid.error());
    FileDescriptor exit = aboveStandard(pidfd_open(*pid, 0));
    if (!exit.isOpen()) return std::unexpected(abort(*pid, name));
    return SpawnedProcess{.pid = *pid,
                          .exit = std::move(exit),
                          .input = std::move(pipes->input.ours),
                          .output = std::move(pipes->output.ours),
                          .error = std::move(pipes->error.ours)};
}

}  // namespace orvane
