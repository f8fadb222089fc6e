#include "Pty/Drain.h"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <optional>

#include "Platform/AsioMainLoop.h"
#include "Platform/LoopThread.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "Platform/Reaper.h"
#include "Terminal/VtermHost.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::benchmark {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int cols = 80;
constexpr int rows = 25;
constexpr int historyLines = 10'000;
constexpr std::size_t readSize = 0x20000;

/// Counts what came through until there is enough of it.
struct Progress {
    std::size_t wanted;
    Clock::time_point start = Clock::now();
    Clock::time_point deadline;
    std::size_t received = 0;

    bool isOver() const { return received >= wanted || Clock::now() >= deadline; }
    double megabytesPerSecond() const {
        return static_cast<double>(received) / 1e6 / std::chrono::duration<double>(Clock::now() - start).count();
    }
};

Measured<double> drainedByHand(const Flood& flood, Progress progress,
                               const std::function<void(std::string_view)>& take) {
    auto process = PseudoTerminalHelpers::forkAndExec(
        {.path = "/bin/sh", .arguments = flood.command, .environment = LocalProcess::defaultEnvironment()},
        {.rows = rows, .cols = cols});
    if (!process) return Failure(process.error().message());
    const int master = process->master.number();
    std::string buffer(readSize, '\0');
    while (!progress.isOver()) {
        const ssize_t count = read(master, buffer.data(), buffer.size());
        if (count > 0) {
            progress.received += static_cast<std::size_t>(count);
            take(std::string_view(buffer).substr(0, static_cast<std::size_t>(count)));
        } else if (count < 0 && errno == EAGAIN) {
            pollfd readable{.fd = master, .events = POLLIN, .revents = 0};
            poll(&readable, 1, 100);
        } else {
            break;
        }
    }
    const double rate = progress.megabytesPerSecond();
    process->master.close();
    kill(process->pid, SIGKILL);
    Reaper::waitFor(process->exit, 0);
    return rate;
}

/// A headless terminal that stops the loop when enough has come.
class Counter final : public HeadlessTerminal {
 public:
    Counter(AsioMainLoop& loop, MainLoop& reader, Progress& progress)
        : HeadlessTerminal(loop, reader, {.cols = cols, .rows = rows, .scrollback = historyLines},
                           [&loop](std::optional<int>) { loop.stop(); }),
          loop_(loop),
          progress_(progress) {}

 protected:
    void dataReceived(std::string_view slice) override {
        HeadlessTerminal::dataReceived(slice);
        progress_.received += slice.size();
        if (progress_.isOver()) loop_.stop();
    }

 private:
    AsioMainLoop& loop_;
    Progress& progress_;
};

Measured<double> drainedByLocalProcess(const Flood& flood, Progress progress) {
    AsioMainLoop loop;
    LoopThread reader;
    Counter counter(loop, reader.loop(), progress);
    const auto started = counter.process.startProcess(
        {.executable = "/bin/sh", .args = {flood.command.begin() + 1, flood.command.end()}, .currentDirectory = {}});
    if (!started) return Failure(started.error().message());
    loop.run();
    const double rate = progress.megabytesPerSecond();
    const pid_t pid = counter.process.shellPid();
    if (pid != 0) kill(pid, SIGKILL);
    return rate;
}

}  // namespace

Measured<double> drained(const Flood& flood, Drainer drainer, std::size_t bytes, std::chrono::seconds limit) {
    const Progress progress{.wanted = bytes, .deadline = Clock::now() + limit};
    switch (drainer) {
        case Drainer::bareRead:
            return drainedByHand(flood, progress, [](std::string_view) {});
        case Drainer::libvterm: {
            VtermHost host({.cols = cols, .rows = rows});
            return drainedByHand(flood, progress, [&](std::string_view slice) { host.feed(slice); });
        }
        case Drainer::localProcess:
            return drainedByLocalProcess(flood, progress);
    }
    std::unreachable();
}

}  // namespace orvane::benchmark
