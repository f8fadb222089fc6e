#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"

#include <boost/json.hpp>
#include <charconv>
#include <cmath>
#include <ostream>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"

namespace orvane::AgentArguments {

namespace {

/// A year; longer is a typing error.
constexpr double longestTimeout = 366.0 * 86400;

}  // namespace

std::expected<Target, Refusal> agent(const HostContext& host, const JSONObject& arguments) {
    const auto session = Selection::session(host, arguments.string("session"));
    if (!session) return std::unexpected(session.error());
    if ((*session)->agent() == nullptr) {
        return std::unexpected(Refusal{.message = host.l10n.text("error.noAgentInTerminal", (*session)->title())});
    }
    if ((*session)->hasExited()) return std::unexpected(Refusal{.message = host.l10n.text("error.hasEnded")});
    return Target{.session = *session, .agent = (*session)->agent()};
}

std::expected<void, int> addTimeout(ClientContext& client, const Arguments& arguments, boost::json::object& request) {
    const std::string text = arguments.value("timeout");
    if (text.empty()) return {};
    double seconds = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && std::isfinite(seconds);
    if (!isNumber || seconds < 0 || seconds > longestTimeout) {
        client.errors << client.l10n.text("usage.notSeconds", text) << '\n';
        return std::unexpected(CommandStatus::wrongUsage);
    }
    request["timeout"] = seconds;
    return {};
}

std::optional<double> timeoutOf(const JSONObject& arguments) {
    return arguments.contains("timeout") ? std::optional(arguments.number("timeout")) : std::nullopt;
}

int await(ClientContext& client, std::string_view verb, const boost::json::object& request) {
    int status = CommandStatus::done;
    const auto print = [&](const JsonValue& value) {
        const JSONObject result(value);
        if (result.boolean("timedOut")) {
            client.errors << client.l10n.text("wait.timedOut") << '\n';
            status = CommandStatus::timedOut;
            return;
        }
        client.output << result.string("status") << '\n';
        if (!result.boolean("reached")) status = CommandStatus::endedOtherwise;
    };
    const int answered = client.askStreaming(verb, request, [](const JSONObject&) {}, print);
    return answered == CommandStatus::done ? status : answered;
}

JsonValue reached(const SessionController* session, bool isWhatWasWanted) {
    return {{"status", session == nullptr ? "closed" : session->status().name()}, {"reached", isWhatWasWanted}};
}

}  // namespace orvane::AgentArguments
