#include <chrono>
#include <optional>
#include <thread>
#include <variant>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneShell/Host/Host.h"
#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/LineClient.h"

#include <boost/json.hpp>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr auto wakePatience = 10s;
constexpr auto wakeInterval = 5ms;

/// Brings the host that runs to the front. False when it ended meanwhile, so that this process may take its place.
std::expected<bool, std::string> wakeOther(const std::string& lockPath, const DiagnosticLog& log) {
    const auto deadline = std::chrono::steady_clock::now() + wakePatience;
    std::string problem = "the host that has " + lockPath + " does not answer";
    while (std::chrono::steady_clock::now() < deadline) {
        const auto seen = InstanceLock::observe(lockPath);
        if (seen.state == InstanceLock::State::free) return false;
        if (seen.state == InstanceLock::State::running) {
            auto client = LineClient::connect(seen.record.socketPath, wakePatience);
            if (client && client->request(Json::write({{"verb", "activate-existing"}}))) {
                log.log("launch: another instance is running, it was activated");
                return true;
            }
        }
        std::this_thread::sleep_for(wakeInterval);
    }
    return std::unexpected(problem);
}

/// The lock, or nothing when another host has it and was woken.
std::expected<std::optional<InstanceLock>, std::string> becomeOnlyHost(const std::string& lockPath,
                                                                       const DiagnosticLog& log) {
    while (true) {
        auto lock = InstanceLock::acquire(lockPath);
        if (!lock) return std::unexpected(lock.error().message());
        if (*lock) return std::move(*lock);
        const auto woken = wakeOther(lockPath, log);
        if (!woken) return std::unexpected(woken.error());
        if (*woken) return std::nullopt;
    }
}

}  // namespace

int runHost(Host::Mode mode, const Environment& environment, const std::function<void(const std::string&)>& tellReady,
            const std::function<void(const std::string&)>& tellFailure) {
    SignalWatch::ignoreBrokenPipes();
    DiagnosticLog log;
    if (auto made = createFolders(Folders::applicationSupport(environment)); !made) {
        tellFailure(made.error().message());
        return 1;
    }
    auto lock = becomeOnlyHost(HostPaths::lock(environment), log);
    if (!lock) {
        tellFailure(lock.error());
        return 1;
    }
    if (!lock->has_value()) {
        tellReady("ready");
        return 0;
    }
    log.log("launch: instance primaire");
    // Without it the preferences last as long as this process, which is no reason not to start; saving them will tell.
    const std::string preferences = Folders::preferencesFile(environment);
    (void)createFolders(preferences.substr(0, preferences.rfind('/')));
    Host host(mode, environment, std::move(lock->value()), std::move(log));
    if (auto started = host.start(); !started) {
        tellFailure(started.error());
        return 1;
    }
    tellReady("ready");
    host.run();
    return 0;
}

}  // namespace orvane
