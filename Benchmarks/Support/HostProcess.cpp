#include "Support/HostProcess.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/wait.h>

#include <boost/json.hpp>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/InstanceLock.h"

namespace orvane::benchmark {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 20s;
/// A command looks every 5 ms. This one looks more often, for it wants to know when the host is there.
constexpr auto pollInterval = 200us;

bool endsWithin(const FileDescriptor& process, std::chrono::milliseconds limit) {
    pollfd ended{.fd = process.number(), .events = POLLIN, .revents = 0};
    return poll(&ended, 1, static_cast<int>(limit.count())) == 1;
}

/// How the process ended; nothing when it does not in time.
std::optional<ExitStatus> waitForEnd(const FileDescriptor& process) {
    siginfo_t info{};
    if (!endsWithin(process, patience)) return std::nullopt;
    if (waitid(P_PIDFD, static_cast<id_t>(process.number()), &info, WEXITED) != 0) return std::nullopt;
    return ExitStatus::of(info);
}

}  // namespace

std::string requestLine(std::string_view verb, boost::json::object arguments) {
    return Json::write({{"verb", verb}, {"arguments", std::move(arguments)}, {"language", "en"}});
}

Measured<HostProcess> HostProcess::start(const std::string& orvane, const Environment& environment,
                                         ChildProcess::Group group) {
    auto process = spawn({.arguments = {orvane, "host"}, .environment = environment, .group = group});
    if (!process) return Failure(process.error().message());
    return HostProcess(*std::move(process), environment);
}

HostProcess::~HostProcess() {
    if (!process_.exit.isOpen()) return;
    kill(process_.pid, SIGKILL);
    (void)waitForEnd(process_.exit);
}

Measured<LineClient> HostProcess::connect() const {
    const std::string lock = HostPaths::lock(environment_);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto seen = InstanceLock::observe(lock);
        if (seen.state == InstanceLock::State::running) {
            if (auto client = LineClient::connect(seen.record.socketPath)) return std::move(*client);
        }
        if (endsWithin(process_.exit, 0ms)) return Failure("the host ended before it listened");
        std::this_thread::sleep_for(pollInterval);
    }
    return Failure("the host does not listen");
}

Measured<void> HostProcess::stop() {
    kill(process_.pid, SIGTERM);
    const auto status = waitForEnd(process_.exit);
    if (!status) return Failure("the host does not end");  // the destructor kills it
    process_.exit.close();
    if (!status->isSuccess()) return Failure(fmt::format("the host ended with status {}", status->shellCode()));
    return {};
}

Measured<JsonValue> ask(LineClient& client, std::string_view verb, boost::json::object arguments) {
    const auto line = client.request(requestLine(verb, std::move(arguments)));
    if (!line) return Failure(line.error().message());
    const auto reply = Json::parse(*line).value_or(JsonValue());
    const JSONObject object(reply);
    const JsonValue* result = object.find("result");
    if (result == nullptr || !object.boolean("ok")) {
        return Failure(fmt::format("the host answers {} with {}", verb, *line));
    }
    return *result;
}

}  // namespace orvane::benchmark
