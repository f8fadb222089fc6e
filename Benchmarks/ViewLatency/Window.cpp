#include "ViewLatency/Window.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>

#include "Platform/Reaper.h"
#include "TerminalEmulator/Terminal.h"
#include "ViewLatency/Interruption.h"
#include "ViewLatency/PaneProgram.h"

namespace orvane::benchmark {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr std::chrono::seconds patience{20};
/// Longer than what is looked for.
constexpr std::size_t tailSize = 16;
constexpr std::string_view synchronizedQuery = "\x1b[?2026$p";
constexpr std::string_view synchronizedKnown = "\x1b[?2026;2$y";
constexpr std::string_view frameBegin = "\x1b[?2026h";
constexpr std::string_view key = "k";

/// ppoll counts in nanoseconds, where poll would make a pause a millisecond longer.
bool isReadable(int descriptor, microseconds limit) {
    pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
    const timespec time{.tv_sec = limit.count() / 1'000'000, .tv_nsec = limit.count() % 1'000'000 * 1000};
    return ppoll(&waiting, 1, &time, nullptr) > 0;
}

microseconds until(Clock::time_point end) {
    return std::max(std::chrono::ceil<microseconds>(end - Clock::now()), microseconds::zero());
}

}  // namespace

Measured<std::unique_ptr<Window>> Window::open(std::vector<std::string> words, Environment environment,
                                               Terminal* screen) {
    environment["TERM"] = "xterm-256color";
    // Where a view is opened it shows the project of that folder.
    PseudoTerminalHelpers::Command command{
        .path = words.front(), .arguments = std::move(words), .workingDirectory = environment["HOME"]};
    for (const auto& [name, value] : environment)
        command.environment.push_back(name + '=' + value);
    auto process = PseudoTerminalHelpers::forkAndExec(command, {.rows = rows, .cols = cols});
    if (!process) return Failure(process.error().message());
    std::unique_ptr<Window> window(new Window(std::move(*process), screen));
    if (auto shown = window->readUntil(PaneProgram::readyMark()); !shown) return Failure(shown.error());
    return window;
}

Measured<std::unique_ptr<Window>> Window::openCommand(const std::string& command, const Environment& environment) {
    return open({"/bin/sh", "-c", command}, environment);
}

Window::~Window() {
    process_.master.close();
    kill(process_.pid, SIGKILL);
    Reaper::waitFor(process_.exit, 0);
}

Measured<double> Window::press() {
    const auto start = Clock::now();
    if (auto typed = write(key); !typed) return Failure(typed.error());
    if (auto shown = readUntil(PaneProgram::mark(keys_++)); !shown) return Failure(shown.error());
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

Measured<void> Window::readFor(microseconds time) {
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
        if (auto read = readOnce(until(end)); !read) return Failure(read.error());
    }
    return {};
}

Measured<void> Window::readUntil(std::string_view text) {
    const auto end = Clock::now() + patience;
    while (Clock::now() < end) {
        const auto read = readOnce(until(end));
        if (!read) return Failure(read.error());
        if (*read && countOf(text) > 0) return {};
    }
    return Failure("the echo of a key does not come");
}

Measured<bool> Window::readOnce(microseconds limit) {
    if (auto goesOn = Interruption::check(); !goesOn) return Failure(goesOn.error());
    if (!isReadable(process_.master.number(), limit)) return false;
    std::array<char, 1 << 16> room;
    const ssize_t count = ::read(process_.master.number(), room.data(), room.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return false;
    if (count <= 0) return Failure("the program on the terminal has ended: " + recent_);
    take({room.data(), static_cast<std::size_t>(count)});
    if (countOf(synchronizedQuery) > 0) {
        if (auto answered = write(synchronizedKnown); !answered) return Failure(answered.error());
    }
    return true;
}

void Window::take(std::string_view bytes) {
    recent_.erase(0, recent_.size() - std::min(recent_.size(), tailSize));
    recentBegin_ = recent_.size();
    recent_ += bytes;
    bytesReceived_ += bytes.size();
    framesReceived_ += countOf(frameBegin);
    if (screen_ != nullptr) screen_->feed(bytes);
}

Measured<void> Window::write(std::string_view bytes) const {
    const ssize_t count = ::write(process_.master.number(), bytes.data(), bytes.size());
    if (count != static_cast<ssize_t>(bytes.size())) return Failure("a key cannot be typed");
    return {};
}

/// How often the text has come to its end in the last read.
std::size_t Window::countOf(std::string_view text) const {
    std::size_t count = 0;
    std::size_t at = recentBegin_ - std::min(recentBegin_, text.size() - 1);
    while ((at = recent_.find(text, at)) != std::string::npos) {
        ++count;
        at += text.size();
    }
    return count;
}

}  // namespace orvane::benchmark
