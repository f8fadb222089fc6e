#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"

namespace orvane {
class TerminalAgent;
}

/// What the verbs that talk to agents have in common.
namespace orvane::AgentArguments {

inline constexpr Parameter sessionParameter{
    .kind = Parameter::Kind::required, .name = "SESSION", .textKey = "help.parameter.session"};
inline constexpr Parameter timeoutParameter{
    .kind = Parameter::Kind::option, .name = "--timeout", .valueName = "S", .textKey = "help.parameter.timeout"};

/// A session with the agent in it; refused for one that has none or has ended.
struct Target {
    SessionController* session = nullptr;
    TerminalAgent* agent = nullptr;
};
std::expected<Target, Refusal> agent(const HostContext& host, const JSONObject& arguments);

/// Takes "--timeout" over into a request: seconds, fractions too. An exit status when it is no such number.
std::expected<void, int> addTimeout(ClientContext& client, const Arguments& arguments, boost::json::object& request);
std::optional<double> timeoutOf(const JSONObject& arguments);

/// Sends a request whose answer may take any time. Prints the status that a session has come to; the exit status says
/// whether that was what was waited for.
int await(ClientContext& client, std::string_view verb, const boost::json::object& request);

/// The outcome for a session that waiting for is over: {"status":…,"reached":…}.
JsonValue reached(const SessionController* session, bool isWhatWasWanted);

}  // namespace orvane::AgentArguments
