#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "Platform/Reaper.h"
#include "ViewLatency/PaneProgram.h"
#include "ViewLatency/Workspaces.h"

namespace orvane::benchmark {

namespace {

constexpr const char* program = "/usr/bin/tmux";

/// All that is written until the last who could write has gone.
std::string readToEnd(int descriptor) {
    std::string text;
    std::array<char, 4096> room;
    while (true) {
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        poll(&readable, 1, 1000);
        const ssize_t count = read(descriptor, room.data(), room.size());
        if (count <= 0) return text;
        text.append(room.data(), static_cast<std::size_t>(count));
    }
}

/// Sockets of others are out of sight, and so are the user's settings.
std::vector<std::string> commandLine(std::vector<std::string> words) {
    static constexpr std::array always = {program, "-L", "view-latency", "-f", "/dev/null"};
    words.insert(words.begin(), always.begin(), always.end());
    return words;
}

}  // namespace

Measured<std::unique_ptr<TmuxWorkspace>> TmuxWorkspace::open(const std::string& flood) {
    std::unique_ptr<TmuxWorkspace> workspace(new TmuxWorkspace);
    if (auto started = workspace->start(flood); !started) return Failure(started.error());
    return workspace;
}

Measured<void> TmuxWorkspace::start(const std::string& flood) {
    const std::string echo = PaneProgram::command(PaneProgram::echo);
    const std::string cols = std::to_string(Window::cols);
    const std::string rows = std::to_string(Window::rows);
    const std::string first = flood.empty() ? echo : flood;
    if (auto made = tmux({"new-session", "-d", "-x", cols, "-y", rows, first}); !made) return Failure(made.error());
    const auto number = tmux({"display-message", "-p", "#{pid}"});
    if (!number) return Failure(number.error());
    server_ = std::atoi(number->c_str());
    if (!flood.empty()) {
        if (auto split = tmux({"split-window", "-h", echo}); !split) return Failure(split.error());
    }
    auto window = Window::open(commandLine({"attach-session"}), environment_.variables());
    if (!window) return Failure("tmux: " + window.error());
    window_ = std::move(*window);
    return {};
}

/// The server ends by itself when the windows do, but not before the folders are to go.
TmuxWorkspace::~TmuxWorkspace() {
    window_.reset();
    try {
        (void)tmux({"kill-server"});
    } catch (const std::exception& exception) {
        std::fputs(exception.what(), stderr);
    }
}

Measured<std::string> TmuxWorkspace::tmux(std::vector<std::string> words) const {
    auto process = spawn({.arguments = commandLine(std::move(words)),
                          .environment = environment_.variables(),
                          .errorOutput = ChildProcess::ErrorOutput::intoOutput});
    if (!process) return Failure(process.error().message());
    std::string text = readToEnd(process->output.number());
    if (!Reaper::waitFor(process->exit, 0).isSuccess()) return Failure("tmux: " + text);
    return text;
}

}  // namespace orvane::benchmark
