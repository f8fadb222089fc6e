#include "TerminalEmulator/LocalProcess.h"

#include <fmt/format.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <utility>

#include "Platform/Reaper.h"

namespace orvane {

namespace {

/// At once: the next thing that happens may be the fault that is looked for.
void debugLine(const std::string& line) {
    fmt::print("{}\n", line);
    std::fflush(stdout);
}

/// A line stays a line, and reading it on a terminal is safe.
std::string printable(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += code < 0x20 || code == 0x7F ? fmt::format("\\x{:02x}", code) : std::string(1, byte);
    }
    return text;
}

}  // namespace

LocalProcess::LocalProcess(MainLoop& dispatch, MainLoop& reader, LocalProcessDelegate& delegate)
    : dispatch_(dispatch), reader_(reader), delegate_(delegate) {}

LocalProcess::~LocalProcess() {
    close();
}

std::expected<void, SystemError> LocalProcess::startProcess(const Start& start) {
    if (running_) return {};
    close();
    PseudoTerminalHelpers::Command command{.path = start.executable,
                                           .arguments = start.args,
                                           .environment = start.environment ? *start.environment : defaultEnvironment(),
                                           .workingDirectory = start.currentDirectory};
    command.arguments.insert(command.arguments.begin(), start.execName.value_or(start.executable));
    auto process = PseudoTerminalHelpers::forkAndExec(command, delegate_.getWindowSize());
    if (!process) return std::unexpected(process.error());
    shellPid_ = process->pid;
    running_ = true;
    exit_ = std::move(process->exit);
    childMonitor_ = dispatch_.watch(exit_.number(), Readiness::readable, [this] { childProcessChanged(); });
    input_.emplace(dispatch_, process->master.number(), sendLimit);
    io_.emplace(dispatch_, reader_, std::move(process->master), ReadChannel::Limits{},
                ReadChannel::Callbacks{.onData =
                                           [this](std::string_view bytes) {
                                               noteRead(bytes);
                                               delegate_.dataReceived(bytes);
                                           },
                                       .onEnd =
                                           [this] {
                                               noteRead({});
                                               running_ = false;
                                               input_.reset();
                                           }},
                loggingDirectory_);
    return {};
}

void LocalProcess::send(std::string_view data) {
    if (!running_ || !input_) return;
    const std::size_t number = ++sendCount_;
    if (debugIO) debugLine(fmt::format("[SEND-{}] Queuing data to client: {}", number, printable(data)));
    input_->write(data, [this, number](const WriteQueue::Completion& completion) { noteSent(number, completion); });
}

void LocalProcess::noteSent(std::size_t number, const WriteQueue::Completion& completion) {
    total_ += completion.written;
    if (debugIO) debugLine(fmt::format("[SEND-{}] completed bytes={}", number, total_));
    if (completion.error) {
        fmt::print(stderr, "Error writing data to the child, errno={}\n", completion.error->number);
    }
}

/// No bytes are the end of file.
void LocalProcess::noteRead(std::string_view bytes) {
    if (!debugIO) return;
    totalRead_ += bytes.size();
    debugLine(fmt::format("[READ] count={} received from host total={}", bytes.size(), totalRead_));
}

void LocalProcess::terminate() {
    if (shellPid_ != 0) kill(shellPid_, SIGTERM);
    close();
}

void LocalProcess::setWindowSize(const WindowSize& size) {
    // A terminal that has just been closed at the other side has no size to set.
    if (running_ && io_) (void)PseudoTerminalHelpers::setWinSize(io_->descriptor(), size);
}

void LocalProcess::setHostLogging(std::optional<std::string> directory) {
    loggingDirectory_ = std::move(directory);
    if (io_) io_->setLogging(loggingDirectory_);
}

int LocalProcess::childfd() const {
    return running_ && io_ ? io_->descriptor() : -1;
}

/// `USER` twice and `LC_TYPE`, which is no variable of POSIX, are part of the list as it was settled.
std::vector<std::string> LocalProcess::defaultEnvironment(const Environment& parent) {
    std::vector<std::string> list = {"TERM=xterm-256color", "COLORTERM=truecolor", "LANG=en_US.UTF-8"};
    static constexpr std::array names = {"LOGNAME", "USER", "DISPLAY", "LC_TYPE", "USER", "HOME"};
    for (const char* name : names) {
        if (const auto found = parent.find(name); found != parent.end())
            list.push_back(found->first + '=' + found->second);
    }
    return list;
}

/// The end is told behind everything that the program has written.
void LocalProcess::childProcessChanged() {
    childMonitor_.reset();
    int status = 0;
    const bool isReaped = waitpid(shellPid_, &status, WNOHANG) == shellPid_;
    exit_.close();
    shellPid_ = 0;
    io_->whenDrained([this, exitCode = isReaped ? std::optional(status) : std::nullopt] {
        running_ = false;
        delegate_.processTerminated(*this, exitCode);
    });
}

void LocalProcess::close() {
    childMonitor_.reset();
    input_.reset();
    io_.reset();
    running_ = false;
    if (exit_.isOpen()) Reaper::reapLater(dispatch_, shellPid_, std::move(exit_));
    shellPid_ = 0;
}

}  // namespace orvane
