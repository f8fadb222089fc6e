#include "OrvaneShell/CommandLine/ControlClient.h"

#include <chrono>
#include <thread>

#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/DetachedProcess.h"
#include "Platform/InstanceLock.h"

namespace orvane::ControlClient {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 5s;
/// Longer than a host waits for another one that has the lock.
constexpr auto startPatience = 20s;
constexpr auto pollInterval = 5ms;

/// Starts the host in a session of its own, so that the end of this terminal does not end it, and waits until it
/// listens.
std::expected<void, Failure> startHost(const Environment& environment) {
    const auto answer =
        DetachedProcess::start("/proc/self/exe", {"orvane", "host", "--background"}, environment, startPatience);
    if (!answer) return std::unexpected(Failure{.isAbsent = false, .message = answer.error().message()});
    if (answer->starts_with("ready")) return {};
    return std::unexpected(Failure{.isAbsent = false, .message = *answer});
}

}  // namespace

std::expected<LineClient, Failure> connect(const Environment& environment, HostStart start) {
    const std::string lockPath = HostPaths::lock(environment);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    bool hasStarted = false;
    std::string lastProblem;
    while (true) {
        const auto seen = InstanceLock::observe(lockPath);
        if (seen.state == InstanceLock::State::running) {
            auto client = LineClient::connect(seen.record.socketPath);
            if (client) return std::move(*client);
            lastProblem = client.error().message();
        } else if (seen.state == InstanceLock::State::free) {
            if (start == HostStart::never || hasStarted)
                return std::unexpected(Failure{.isAbsent = true, .message = {}});
            if (auto started = startHost(environment); !started) return std::unexpected(started.error());
            hasStarted = true;
            continue;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::unexpected(Failure{.isAbsent = false, .message = lastProblem});
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

bool waitForEnd(const Environment& environment, pid_t host) {
    const std::string lockPath = HostPaths::lock(environment);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto seen = InstanceLock::observe(lockPath);
        if (seen.state != InstanceLock::State::running || seen.record.processId != host) return true;
        std::this_thread::sleep_for(pollInterval);
    }
    return false;
}

}  // namespace orvane::ControlClient
