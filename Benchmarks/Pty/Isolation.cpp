#include "Pty/Isolation.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <memory>
#include <vector>

#include "Platform/AsioMainLoop.h"
#include "Platform/LoopThread.h"
#include "Support/ResidentMemory.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::benchmark {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

double since(Clock::time_point start) {
    return Milliseconds(Clock::now() - start).count();
}

class Flooded final : public HeadlessTerminal {
 public:
    using HeadlessTerminal::HeadlessTerminal;
    std::size_t received = 0;

 protected:
    void dataReceived(std::string_view slice) override {
        received += slice.size();
        HeadlessTerminal::dataReceived(slice);
    }
};

/// A quick typist's pause between two keys.
constexpr std::chrono::milliseconds keyPause{50};

/// Types a key when the echo of the one before has come.
class Typist final : public HeadlessTerminal {
 public:
    using HeadlessTerminal::HeadlessTerminal;
    std::vector<double> latencies;

    void type() {
        if (isWaiting_) return;
        isWaiting_ = true;
        typedAt_ = Clock::now();
        process.send("x");
    }

 protected:
    void dataReceived(std::string_view slice) override {
        HeadlessTerminal::dataReceived(slice);
        if (!isWaiting_ || !slice.contains('x')) return;
        latencies.push_back(since(typedAt_));
        isWaiting_ = false;
    }

 private:
    Clock::time_point typedAt_;
    bool isWaiting_ = false;
};

/// Processor time of this thread: what others take of a busy computer does not count.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

Measured<void> startShell(HeadlessTerminal& terminal, const std::string& script) {
    const auto started =
        terminal.process.startProcess({.executable = "/bin/sh", .args = {"-c", script}, .currentDirectory = {}});
    if (!started) return Failure(started.error().message());
    return {};
}

}  // namespace

Measured<Isolation> isolation(int echoingSessions, std::chrono::milliseconds duration) {
    AsioMainLoop loop;
    LoopThread reader;
    const TerminalOptions options{.cols = 80, .rows = 25, .scrollback = 10'000};
    Flooded flood(loop, reader.loop(), options, {});
    std::vector<std::unique_ptr<Typist>> typists;
    typists.reserve(static_cast<std::size_t>(echoingSessions));
    for (int index = 0; index < echoingSessions; ++index)
        typists.push_back(std::make_unique<Typist>(loop, reader.loop(), options, nullptr));
    if (auto started = startShell(flood, "exec yes"); !started) return Failure(started.error());
    for (const auto& typist : typists) {
        if (auto started = startShell(*typist, "stty raw -echo; exec cat"); !started) return Failure(started.error());
    }
    Isolation result;
    // A timer of one millisecond comes late by as long as a turn holds the loop.
    Clock::time_point last = Clock::now();
    double workedBefore = threadMilliseconds();
    bool isWarm = false;
    const auto pulse = loop.every(std::chrono::milliseconds(1), {}, [&] {
        const double worked = threadMilliseconds();
        if (isWarm) {
            result.longestTurn = std::max(result.longestTurn, since(last) - 1);
            result.longestWork = std::max(result.longestWork, worked - workedBefore);
        }
        last = Clock::now();
        workedBefore = worked;
    });
    const auto warm = loop.after(std::chrono::milliseconds(300), [&] { isWarm = true; });
    const auto keys = loop.every(keyPause, {}, [&] {
        if (!isWarm) return;
        for (const auto& typist : typists)
            typist->type();
    });
    const auto start = Clock::now();
    const auto end = loop.after(std::chrono::milliseconds(300) + duration, [&] { loop.stop(); });
    loop.run();
    result.floodRate = static_cast<double>(flood.received) / 1e3 / since(start);
    result.megabytes = residentBytes(getpid()) / 1e6;
    std::vector<double> all;
    for (const auto& typist : typists) {
        all.insert(all.end(), typist->latencies.begin(), typist->latencies.end());
        typist->process.terminate();
    }
    kill(flood.process.shellPid(), SIGKILL);
    if (all.size() < 100) return Failure("too few keys came back");
    std::ranges::sort(all);
    result.medianMilliseconds = all[all.size() / 2];
    result.worstOfHundred = all[all.size() * 99 / 100];
    return result;
}

}  // namespace orvane::benchmark
