// Programs that write more than anybody can read: how much of what a bare loop reads comes through to the screen, and
// what such a program does to the others.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "Pty/Drain.h"
#include "Pty/Isolation.h"
#include "Support/LogLine.h"
#include "Support/Report.h"

namespace orvane::benchmark {

namespace {

struct Settings {
    std::size_t bytes = 200'000'000;
    std::chrono::seconds limit{10};
    std::chrono::milliseconds isolation{5000};
};

constexpr double leastShare = 0.6;
constexpr double mostKeyMilliseconds = 20;
constexpr double mostTurnMilliseconds = 8;
constexpr int echoingSessions = 20;

/// A file of log lines, gone at the end.
class LogFile {
 public:
    explicit LogFile(std::size_t bytes)
        : path_(std::filesystem::temp_directory_path() / fmt::format("orvane-pty-bench-{}", getpid())) {
        std::ofstream file(path_, std::ios::binary);
        for (int number = 0; static_cast<std::size_t>(file.tellp()) < bytes; ++number)
            file << logLine(number, 96) << '\n';
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    std::string path() const { return path_.string(); }

 private:
    std::filesystem::path path_;
};

Measured<void> measureDrain(const Flood& flood, const Settings& settings) {
    const auto bare = drained(flood, Drainer::bareRead, settings.bytes, settings.limit);
    if (!bare) return Failure(bare.error());
    const auto peer = drained(flood, Drainer::libvterm, settings.bytes, settings.limit);
    if (!peer) return Failure(peer.error());
    const auto ours = drained(flood, Drainer::localProcess, settings.bytes, settings.limit);
    if (!ours) return Failure(ours.error());
    report({.name = flood.name + ", bare read", .values = fmt::format("{:.1f}", *bare), .unit = "MB/s"});
    report({.name = flood.name + ", read and libvterm", .values = fmt::format("{:.1f}", *peer), .unit = "MB/s"});
    report({.name = flood.name + ", LocalProcess and Terminal",
            .values = fmt::format("{:.1f}  {:.2f} of the bare read", *ours, *ours / *bare),
            .unit = "MB/s",
            .value = *ours / *bare,
            .atLeast = leastShare});
    return {};
}

Measured<void> measureIsolation(const Settings& settings) {
    const auto result = isolation(echoingSessions, settings.isolation);
    if (!result) return Failure(result.error());
    report({.name = fmt::format("key to screen of {} sessions beside a flood", echoingSessions),
            .values = fmt::format("median {:.2f}  p99 {:.2f}", result->medianMilliseconds, result->worstOfHundred),
            .unit = "ms",
            .value = result->worstOfHundred,
            .atMost = mostKeyMilliseconds});
    report({.name = "longest turn of the main loop",
            .values = fmt::format("{:.2f}", result->longestTurn),
            .unit = "ms",
            .value = result->longestTurn,
            .atMost = mostTurnMilliseconds});
    report({.name = "of it processor time, the longest",
            .values = fmt::format("{:.2f}", result->longestWork),
            .unit = "ms",
            .value = result->longestWork,
            .atMost = mostTurnMilliseconds});
    report({.name = "resident memory", .values = fmt::format("{:.1f}", result->megabytes), .unit = "MB"});
    report({.name = "the flood meanwhile", .values = fmt::format("{:.1f}", result->floodRate), .unit = "MB/s"});
    return {};
}

Measured<void> measure(const Settings& settings) {
    const LogFile file(settings.bytes);
    for (const Flood& flood :
         {Flood{"yes", {"sh", "-c", "exec yes"}}, Flood{"cat of log lines", {"sh", "-c", "exec cat " + file.path()}}}) {
        if (const auto done = measureDrain(flood, settings); !done) return done;
    }
    return measureIsolation(settings);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    CLI::App app("Measures programs on pseudo-terminals that write without end.");
    bool isQuick = false;
    app.add_flag("--quick", isQuick, "A small version, to see that it works");
    CLI11_PARSE(app, argc, argv);
    Settings settings;
    if (isQuick) {
        settings = {.bytes = 4'000'000, .limit = std::chrono::seconds(5), .isolation = std::chrono::milliseconds(500)};
    }
    if (const auto done = measure(settings); !done) {
        fmt::print(stderr, "pty-bench: {}\n", done.error());
        return 1;
    }
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
