// What it costs to have a host: until it answers, a question to it, and doing nothing.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <boost/json.hpp>
#include <thread>

#include "OrvaneCore/Support/JSONObject.h"
#include "Support/EchoPeer.h"
#include "Support/HostProcess.h"
#include "Support/ProcessActivity.h"
#include "Support/Processors.h"
#include "Support/Report.h"
#include "Support/SavedWorkspace.h"
#include "Support/Statistics.h"
#include "Support/TemporaryEnvironment.h"

namespace orvane::benchmark {

namespace {

struct Settings {
    std::string orvane = ORVANE_EXECUTABLE;
    int starts = 20;
    int repetitions = 10;
    int roundTrips = 1000;
    std::chrono::duration<double> idle{5};
    /// Before the idle time begins, so that what a start leaves to do is done.
    std::chrono::milliseconds rest{1500};
};

constexpr double mostStartMilliseconds = 60;
constexpr double mostTimesEcho = 3;
constexpr SavedWorkspace nothing{};
constexpr SavedWorkspace large{.projects = 20, .tabsPerProject = 5, .panesPerTab = 6};

Measured<void> expectEmptyList(LineClient& client) {
    const auto list = ask(client, "list");
    if (!list) return Failure(list.error());
    if (!list->is_array() || !list->get_array().empty()) return Failure("list is not empty: " + Json::write(*list));
    return {};
}

std::size_t paneCount(const JSONObject& node) {
    if (node.contains("pane")) return 1;
    std::size_t count = 0;
    for (const JsonValue& child : node.object("split").array("children"))
        count += paneCount(JSONObject(child));
    return count;
}

/// A host that had not read its state would start faster than it may.
Measured<void> expectWorkspace(LineClient& client, const SavedWorkspace& size) {
    const auto projects = ask(client, "projects");
    if (!projects) return Failure(projects.error());
    if (!projects->is_array() || projects->get_array().size() != size.projects) {
        return Failure("the host has other projects than it was given: " + Json::write(*projects));
    }
    if (size.projects == 0) return {};
    const auto layout = ask(client, "layout");
    if (!layout) return Failure(layout.error());
    if (paneCount(JSONObject(*layout).object("tree")) != size.panesPerTab) {
        return Failure("the host has other panes than it was given: " + Json::write(*layout));
    }
    return {};
}

/// Milliseconds from starting the host to its first reply.
Measured<double> startOnce(const Settings& settings, const SavedWorkspace& size) {
    const TemporaryEnvironment environment;
    if (size.projects > 0) {
        if (auto written = size.write(environment.variables()); !written) return Failure(written.error());
    }
    const auto start = std::chrono::steady_clock::now();
    auto host = HostProcess::start(settings.orvane, environment.variables());
    if (!host) return Failure(host.error());
    auto client = host->connect();
    if (!client) return Failure(client.error());
    const auto listed = expectEmptyList(*client);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    if (!listed) return Failure(listed.error());
    if (auto checked = expectWorkspace(*client, size); !checked) return Failure(checked.error());
    if (auto stopped = host->stop(); !stopped) return Failure(stopped.error());
    return time.count();
}

Measured<void> measureStarts(const Settings& settings, const std::string& name, const SavedWorkspace& size) {
    std::vector<double> times;
    for (int round = 0; round < settings.starts; ++round) {
        const auto time = startOnce(settings, size);
        if (!time) return Failure(time.error());
        times.push_back(*time);
    }
    const Summary summed = summary(times);
    report({.name = name,
            .values = fmt::format("min {:.2f}  median {:.2f}", summed.minimum, summed.median),
            .unit = "ms",
            .value = summed.median,
            .atMost = mostStartMilliseconds});
    return {};
}

/// Adds the microseconds of each round trip. A reply that differs from the one expected is an error.
Measured<void> roundTrips(LineClient& client, const std::string& request, const std::string& reply, int count,
                          std::vector<double>& times) {
    for (int round = 0; round < count; ++round) {
        std::expected<std::string, SystemError> line;
        times.push_back(timeOf<std::chrono::microseconds>([&] { line = client.request(request); }));
        if (!line) return Failure(line.error().message());
        if (*line != reply) return Failure("an unexpected reply: " + *line);
    }
    return {};
}

/// Those who answer, and where they do it.
struct Peers {
    LineClient& host;
    pid_t hostProcess = 0;
    EchoPeer& echo;
    std::string request;
    std::string reply;
};

Measured<void> place(const Peers& peers, int asking, int answering) {
    for (auto [process, processor] :
         {std::pair(0, asking), {peers.hostProcess, answering}, {peers.echo.pid(), answering}}) {
        if (auto kept = Processors::keep(process, {processor}); !kept) return kept;
    }
    return {};
}

void reportRoundTrips(const std::string& where, const std::vector<double>& hostTimes,
                      const std::vector<double>& echoTimes) {
    const Summary ours = summary(hostTimes);
    const Summary least = summary(echoTimes);
    const auto values = [](const Summary& s) { return fmt::format("min {:.2f}  median {:.2f}", s.minimum, s.median); };
    report({.name = "round trip of list, " + where, .values = values(ours), .unit = "us"});
    report({.name = "round trip of an echo, " + where, .values = values(least), .unit = "us"});
    report({.name = "list against the echo, " + where,
            .values = fmt::format("ratio of medians {:.2f}", ours.median / least.median),
            .unit = "times",
            .value = ours.median / least.median,
            .atMost = mostTimesEcho});
}

/// Both peers in turns, so that what else the machine does meets them alike.
Measured<void> compareRoundTrips(const Settings& settings, const Peers& peers, const std::string& where) {
    std::vector<double> hostTimes;
    std::vector<double> echoTimes;
    for (int repetition = 0; repetition < settings.repetitions; ++repetition) {
        for (auto [client, times] : {std::pair(&peers.host, &hostTimes), {&peers.echo.client(), &echoTimes}}) {
            if (auto done = roundTrips(*client, peers.request, peers.reply, settings.roundTrips, *times); !done) {
                return done;
            }
        }
    }
    reportRoundTrips(where, hostTimes, echoTimes);
    return {};
}

Measured<void> measureRoundTrips(const Settings& settings, LineClient& client, const HostProcess& host,
                                 const TemporaryEnvironment& environment) {
    if (auto listed = expectEmptyList(client); !listed) return Failure(listed.error());
    const std::string request = requestLine("list");
    const auto reply = client.request(request);
    if (!reply) return Failure(reply.error().message());
    const auto echo = EchoPeer::start(environment.folder() + "/echo.sock", *reply);
    if (!echo) return Failure(echo.error());
    const Peers peers{.host = client, .hostProcess = host.pid(), .echo = **echo, .request = request, .reply = *reply};

    const std::vector<int> processors = Processors::allowed();
    if (processors.empty()) return Failure("the system does not tell the processors");
    const int here = processors.front();
    if (auto placed = place(peers, here, here); !placed) return placed;
    if (auto done = compareRoundTrips(settings, peers, "one processor"); !done) return done;
    if (processors.size() > 1) {
        if (auto placed = place(peers, here, processors.back()); !placed) return placed;
        if (auto done = compareRoundTrips(settings, peers, "two processors"); !done) return done;
    }
    return Processors::keep(0, processors);
}

Measured<void> measureIdle(const Settings& settings, pid_t host) {
    std::this_thread::sleep_for(settings.rest);
    const auto before = ProcessActivity::of(host);
    if (!before) return Failure(before.error());
    std::this_thread::sleep_for(settings.idle);
    const auto after = ProcessActivity::of(host);
    if (!after) return Failure(after.error());
    const ProcessActivity done = *after - *before;
    const auto wakeUps = static_cast<double>(done.voluntarySwitches + done.involuntarySwitches);
    report({.name = fmt::format("wake-ups in {:g} s without work", settings.idle.count()),
            .values = fmt::format("voluntary {}  involuntary {}", done.voluntarySwitches, done.involuntarySwitches),
            .unit = "times",
            .value = wakeUps,
            .atMost = 0});
    report({.name = "processor time meanwhile",
            .values = fmt::format("{:.3f}", std::chrono::duration<double, std::milli>(done.processorTime).count()),
            .unit = "ms"});
    return {};
}

Measured<void> measureRunning(const Settings& settings) {
    const TemporaryEnvironment environment;
    if (auto written = large.write(environment.variables()); !written) return written;
    auto host = HostProcess::start(settings.orvane, environment.variables());
    if (!host) return Failure(host.error());
    {
        auto client = host->connect();
        if (!client) return Failure(client.error());
        if (auto measured = measureRoundTrips(settings, *client, *host, environment); !measured) return measured;
    }
    if (auto measured = measureIdle(settings, host->pid()); !measured) return measured;
    return host->stop();
}

Measured<void> measureAll(const Settings& settings) {
    if (auto measured = measureStarts(settings, "start to first reply, fresh folders", nothing); !measured) {
        return measured;
    }
    const std::string name = fmt::format("start to first reply, {} x {} x {} panes", large.projects,
                                         large.tabsPerProject, large.panesPerTab);
    if (auto measured = measureStarts(settings, name, large); !measured) return measured;
    return measureRunning(settings);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    Settings settings;
    bool isQuick = false;
    double idleSeconds = settings.idle.count();
    CLI::App app("Measures what the host of Orvane costs, in folders of its own.");
    app.add_flag("--quick", isQuick, "A few rounds only, to see that it works");
    app.add_option("--idle", idleSeconds, "Seconds to watch the idle host")->check(CLI::Range(0.1, 3600.0));
    app.add_option("orvane", settings.orvane, "The program, by default the one built along")->check(CLI::ExistingFile);
    CLI11_PARSE(app, argc, argv);
    settings.idle = std::chrono::duration<double>(idleSeconds);
    if (isQuick) {
        settings = {.orvane = settings.orvane,
                    .starts = 2,
                    .repetitions = 2,
                    .roundTrips = 50,
                    .idle = std::chrono::duration<double>(0.2),
                    .rest = std::chrono::milliseconds(200)};
    }
    const auto measured = measureAll(settings);
    if (!measured) fmt::print(stderr, "host-latency: {}\n", measured.error());
    return measured ? 0 : 1;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
