#pragma once

#include <boost/json/object.hpp>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Json.h"
#include "Platform/Environment.h"
#include "Platform/LineClient.h"
#include "Platform/Spawn.h"
#include "Support/Failure.h"

namespace orvane::benchmark {

/// The line that asks the host for this, as the command line sends it.
std::string requestLine(std::string_view verb, boost::json::object arguments = {});

/// A running "orvane host" of its own environment. Killed if it was not stopped.
class HostProcess {
 public:
    /// In a session of its own, where the workspace view starts it, the system shares out the processors differently;
    /// there an interrupt from the keyboard does not end it.
    [[nodiscard]] static Measured<HostProcess> start(const std::string& orvane, const Environment& environment,
                                                     ChildProcess::Group group = ChildProcess::Group::ofParent);
    HostProcess(HostProcess&&) = default;
    HostProcess& operator=(HostProcess&&) = delete;
    ~HostProcess();

    pid_t pid() const { return process_.pid; }

    /// Looks at the instance lock, as a command does that starts the host, until it names a socket, and connects.
    [[nodiscard]] Measured<LineClient> connect() const;

    /// Tells the host to end and waits for it. A host that ends with a failure is an error.
    [[nodiscard]] Measured<void> stop();

 private:
    HostProcess(SpawnedProcess process, Environment environment)
        : process_(std::move(process)), environment_(std::move(environment)) {}

    SpawnedProcess process_;
    Environment environment_;
};

/// The result that the host answers with.
[[nodiscard]] Measured<JsonValue> ask(LineClient& client, std::string_view verb, boost::json::object arguments = {});

}  // namespace orvane::benchmark
