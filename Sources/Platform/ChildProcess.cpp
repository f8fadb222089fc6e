#include "Platform/ChildProcess.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <deque>
#include <utility>

#include "Platform/Reaper.h"
#include "Platform/Spawn.h"
#include "Platform/Uninterrupted.h"

// In glibc 2.36 this header does not say that its functions are C.
extern "C" {
#include <sys/pidfd.h>
}

namespace orvane {

namespace {

/// Of one turn, so that a child that writes or reads without end leaves room for everything else.
constexpr std::size_t readLimit = std::size_t{64} * 1024;
constexpr std::size_t sendLimit = std::size_t{1024} * 1024;

/// A write to a pipe that nobody reads raises SIGPIPE on the writing thread. Whatever the program has set for it, the
/// signal is held back for the call and taken off again.
ssize_t writeWithoutSignal(int descriptor, std::string_view bytes) {
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    const ssize_t written = uninterrupted([&] { return write(descriptor, bytes.data(), bytes.size()); });
    const int error = errno;
    if (written < 0 && error == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
        const timespec noTime{};
        sigtimedwait(&pipeSignal, nullptr, &noTime);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return written;
}

}  // namespace

struct ChildProcess::State : std::enable_shared_from_this<State> {
    enum class Phase { running, ended, reaped };

    struct Stream {
        FileDescriptor descriptor;
        std::move_only_function<void(std::string_view)> callback;
        Registration watch;

        void close() {
            watch.reset();
            descriptor.close();
        }
    };

    MainLoop& loop;
    const std::string name;
    const pid_t pid;
    const bool hasOwnGroup;
    Phase phase = Phase::running;
    bool isForgotten = false;  ///< the owner is gone; no callback runs any more
    FileDescriptor exit;
    Registration exitWatch;
    Stream output;
    Stream error;
    std::move_only_function<void(ExitStatus)> onExit;
    FileDescriptor input;
    Registration inputWatch;
    std::deque<std::string> unsent;
    std::size_t unsentSize = 0;
    std::size_t sentOfFirst = 0;
    bool closesWhenSent = false;

    State(MainLoop& itsLoop, const Options& options, SpawnedProcess process, Callbacks callbacks)
        : loop(itsLoop),
          name(options.arguments.front()),
          pid(process.pid),
          hasOwnGroup(options.group != Group::ofParent),
          exit(std::move(process.exit)),
          output{.descriptor = std::move(process.output), .callback = std::move(callbacks.onOutput), .watch = {}},
          error{.descriptor = std::move(process.error), .callback = std::move(callbacks.onError), .watch = {}},
          onExit(std::move(callbacks.onExit)),
          input(std::move(process.input)) {}

    void watch() {
        exitWatch = loop.watch(exit.number(), Readiness::readable, [this] { end(); });
        watch(output);
        if (error.descriptor.isOpen()) watch(error);
    }

    void watch(Stream& stream) {
        stream.watch = loop.watch(stream.descriptor.number(), Readiness::readable, [this, &stream] {
            const auto self = shared_from_this();  // the callback may destroy the process
            read(stream, readLimit);
        });
    }

    /// Reads once and delivers; the number of bytes, 0 when there are none for now or any more.
    std::size_t read(Stream& stream, std::size_t limit) {
        std::array<char, readLimit> buffer;
        const ssize_t count = uninterrupted(
            [&] { return ::read(stream.descriptor.number(), buffer.data(), std::min(limit, buffer.size())); });
        if (count < 0 && errno == EAGAIN) return 0;
        if (count <= 0) {
            stream.close();
            return 0;
        }
        const auto size = static_cast<std::size_t>(count);
        if (stream.callback) stream.callback(std::string_view(buffer.data(), size));
        return size;
    }

    /// Delivers what stands in the pipe at this moment. A grandchild may go on writing for ever.
    void drain(Stream& stream) {
        int queued = 0;
        if (!stream.descriptor.isOpen() || ioctl(stream.descriptor.number(), FIONREAD, &queued) != 0) return;
        auto left = static_cast<std::size_t>(std::max(queued, 0));
        while (left > 0 && !isForgotten) {
            const std::size_t count = read(stream, left);
            if (count == 0) return;
            left -= count;
        }
    }

    void end() {
        const auto self = shared_from_this();  // any of the callbacks may destroy the process
        exitWatch.reset();
        phase = Phase::ended;
        // Reaped only at the very end: until then nobody else gets the child's number, so its group can be signalled.
        const ExitStatus status = Reaper::waitFor(exit, WNOWAIT);
        drain(output);
        drain(error);
        closePipes();
        if (!isForgotten && onExit) onExit(status);
        Reaper::waitFor(exit, 0);
        phase = Phase::reaped;
        exit.close();
    }

    void closePipes() {
        output.close();
        error.close();
        dropInput();
    }

    void forget() {
        isForgotten = true;
        exitWatch.reset();
        closePipes();
        if (phase == Phase::running) Reaper::reapLater(loop, pid, std::move(exit));
    }

    void dropInput() {
        inputWatch.reset();
        input.close();
        unsent.clear();
        unsentSize = 0;
        sentOfFirst = 0;
    }

    std::expected<void, SystemError> write(std::string_view bytes) {
        const std::string_view action = "write to";
        if (!input.isOpen() || closesWhenSent) return std::unexpected(SystemError::of(EPIPE, action, name));
        if (bytes.size() > inputLimit - unsentSize) return std::unexpected(SystemError::of(ENOBUFS, action, name));
        if (bytes.empty()) return {};
        unsent.emplace_back(bytes);
        unsentSize += bytes.size();
        if (unsent.size() == 1) send();
        if (!input.isOpen()) return std::unexpected(SystemError::of(EPIPE, action, name));
        return {};
    }

    void send() {
        for (std::size_t sent = 0; !unsent.empty();) {
            if (sent >= sendLimit) return waitForRoom();
            const std::string_view rest = std::string_view(unsent.front()).substr(sentOfFirst, sendLimit - sent);
            const ssize_t written = writeWithoutSignal(input.number(), rest);
            if (written < 0 && errno == EAGAIN) return waitForRoom();
            if (written < 0) return dropInput();
            sent += static_cast<std::size_t>(written);
            unsentSize -= static_cast<std::size_t>(written);
            sentOfFirst += static_cast<std::size_t>(written);
            if (sentOfFirst < unsent.front().size()) continue;
            unsent.pop_front();
            sentOfFirst = 0;
        }
        inputWatch.reset();
        if (closesWhenSent) input.close();
    }

    void waitForRoom() {
        if (!inputWatch) inputWatch = loop.watch(input.number(), Readiness::writable, [this] { send(); });
    }

    void closeInput() {
        closesWhenSent = true;
        if (unsent.empty()) dropInput();
    }
};

std::expected<std::unique_ptr<ChildProcess>, SystemError> ChildProcess::start(MainLoop& loop, const Options& options,
                                                                              Callbacks callbacks) {
    auto process = spawn(options);
    if (!process) return std::unexpected(process.error());
    auto state = std::make_shared<State>(loop, options, *std::move(process), std::move(callbacks));
    state->watch();
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::move(state)));
}

ChildProcess::~ChildProcess() {
    state_->forget();
}

std::expected<void, SystemError> ChildProcess::write(std::string_view bytes) {
    return state_->write(bytes);
}

void ChildProcess::closeInput() {
    state_->closeInput();
}

std::expected<void, SystemError> ChildProcess::signal(int number) const {
    if (!isRunning()) return std::unexpected(SystemError::of(ESRCH, "signal", state_->name));
    if (pidfd_send_signal(state_->exit.number(), number, nullptr, 0) == 0) return {};
    return std::unexpected(SystemError::last("signal", state_->name));
}

std::expected<void, SystemError> ChildProcess::signalGroup(int number) const {
    const auto failed = [this](int error) {
        return std::unexpected(SystemError::of(error, "signal the group of", state_->name));
    };
    if (!state_->hasOwnGroup) return failed(EINVAL);
    if (state_->phase == State::Phase::reaped) return failed(ESRCH);
    if (killpg(state_->pid, number) != 0) return failed(errno);
    return {};
}

pid_t ChildProcess::pid() const {
    return state_->pid;
}

std::optional<pid_t> ChildProcess::processGroup() const {
    if (!state_->hasOwnGroup) return std::nullopt;
    return state_->pid;
}

bool ChildProcess::isRunning() const {
    return state_->phase == State::Phase::running;
}

}  // namespace orvane
