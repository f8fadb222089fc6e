// What the host pays for sessions in which nothing happens, beside a bare process that holds the same shells.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <boost/json.hpp>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <thread>

#include "Idle/BareHolder.h"
#include "Orvane/Agents/ShellSetup.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "Support/HostProcess.h"
#include "Support/ProcessActivity.h"
#include "Support/Report.h"
#include "Support/ResidentMemory.h"
#include "Support/TemporaryEnvironment.h"
#include "TerminalEmulator/LocalProcess.h"

namespace orvane::benchmark {

namespace {

struct Settings {
    std::string orvane = ORVANE_EXECUTABLE;
    int shells = 64;
    std::chrono::duration<double> idle{10};
    /// Before it is measured, so that what a start leaves to do is done.
    std::chrono::milliseconds rest{3000};
};

constexpr std::chrono::seconds patience{60};
constexpr double mostShareOfOneCore = 0.1;  // percent
constexpr double mostKilobytes = 256;

/// What a process costs that holds idle shells.
struct Cost {
    double bytesPerShell = 0;
    ProcessActivity activity;
};

Measured<Cost> watch(pid_t process, double bytesWithout, const Settings& settings) {
    std::this_thread::sleep_for(settings.rest);
    const double bytes = residentBytes(process) - bytesWithout;
    const auto before = ProcessActivity::of(process);
    if (!before) return Failure(before.error());
    std::this_thread::sleep_for(settings.idle);
    const auto after = ProcessActivity::of(process);
    if (!after) return Failure(after.error());
    return Cost{.bytesPerShell = bytes / settings.shells, .activity = *after - *before};
}

/// Until every shell has shown its prompt.
Measured<void> waitForPrompts(LineClient& client, int shells) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto list = ask(client, "list");
        if (!list) return Failure(list.error());
        const auto& rows = list->as_array();
        const auto working =
            std::ranges::count_if(rows, [](const auto& row) { return JSONObject(row).string("status") == "working"; });
        if (working == shells) return {};
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return Failure("the shells of the host show no prompt");
}

Measured<Cost> costOfHost(const Settings& settings, const TemporaryEnvironment& environment) {
    auto host = HostProcess::start(settings.orvane, environment.variables());
    if (!host) return Failure(host.error());
    auto client = host->connect();
    if (!client) return Failure(client.error());
    if (auto opened = ask(*client, "open", {{"path", environment.folder()}}); !opened) return Failure(opened.error());
    std::this_thread::sleep_for(settings.rest);
    const double without = residentBytes(host->pid());
    for (int index = 0; index < settings.shells; ++index) {
        if (auto made = ask(*client, "new", {{"kind", "shell"}}); !made) return Failure(made.error());
    }
    if (auto shown = waitForPrompts(*client, settings.shells); !shown) return Failure(shown.error());
    auto cost = watch(host->pid(), without, settings);
    if (auto stopped = host->stop(); !stopped) return Failure(stopped.error());
    return cost;
}

Measured<Cost> costOfBareHolder(const Settings& settings, const TemporaryEnvironment& environment) {
    const std::string shell = ShellSetup::of(environment.variables()).shell;
    const auto holder = BareHolder::fork({.path = shell,
                                          .arguments = {shell, "-l"},
                                          .environment = LocalProcess::defaultEnvironment(environment.variables()),
                                          .workingDirectory = environment.folder()},
                                         settings.shells);
    if (!holder) return Failure(holder.error());
    const double without = residentBytes((*holder)->pid());
    if (auto started = (*holder)->startAll(); !started) return Failure(started.error());
    return watch((*holder)->pid(), without, settings);
}

double percentOfCore(const Cost& cost, const Settings& settings) {
    return std::chrono::duration<double>(cost.activity.processorTime) / settings.idle * 100;
}

void reportCost(const std::string& who, const Cost& cost, const Settings& settings) {
    report(
        {.name = "processor, " + who,
         .values = fmt::format("{:.4f}  wake-ups {}", percentOfCore(cost, settings), cost.activity.voluntarySwitches),
         .unit = "% core"});
    report({.name = "resident memory a shell, " + who,
            .values = fmt::format("{:.1f}", cost.bytesPerShell / 1e3),
            .unit = "kB"});
}

void compare(const Cost& host, const Cost& bare, const Settings& settings) {
    const double share = percentOfCore(host, settings);
    const auto ratio = [](double ours, double least) {
        return least > 0 ? fmt::format("{:.1f} times the bare process", ours / least)
                         : fmt::format("{:g}, the bare process {:g}", ours, least);
    };
    report({.name = fmt::format("processor for {} idle sessions", settings.shells),
            .values = ratio(share, percentOfCore(bare, settings)),
            .unit = "% core",
            .value = share,
            .atMost = mostShareOfOneCore});
    const double kilobytes = host.bytesPerShell / 1e3;
    report({.name = "resident memory for each",
            .values = ratio(host.bytesPerShell, bare.bytesPerShell),
            .unit = "kB",
            .value = kilobytes,
            .atMost = mostKilobytes});
}

Measured<void> measure(const Settings& settings) {
    const TemporaryEnvironment environment;
    std::ofstream(environment.folder() + "/.zshrc").close();  // else zsh asks a new user what to put there
    const auto bare = costOfBareHolder(settings, environment);
    if (!bare) return Failure(bare.error());
    const auto host = costOfHost(settings, environment);
    if (!host) return Failure(host.error());
    reportCost("bare process", *bare, settings);
    reportCost("host", *host, settings);
    compare(*host, *bare, settings);
    return {};
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    Settings settings;
    bool isQuick = false;
    double idleSeconds = settings.idle.count();
    CLI::App app("Measures what idle shells cost the host of Orvane, in folders of its own.");
    app.add_flag("--quick", isQuick, "A small version, to see that it works");
    app.add_option("--shells", settings.shells, "How many")->check(CLI::Range(1, 1000));
    app.add_option("--idle", idleSeconds, "Seconds to watch them")->check(CLI::Range(0.1, 3600.0));
    CLI11_PARSE(app, argc, argv);
    settings.idle = std::chrono::duration<double>(idleSeconds);
    if (isQuick) {
        settings = {.shells = 4, .idle = std::chrono::duration<double>(0.2), .rest = std::chrono::milliseconds(200)};
    }
    const auto measured = measure(settings);
    if (!measured) fmt::print(stderr, "idle-shells: {}\n", measured.error());
    return measured ? 0 : 1;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
