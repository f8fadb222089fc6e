#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Verbs/ToolsTable.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

using Failure = ToolsManager::Failure;
using Order = ToolsManager::Order;

int runTools(ClientContext& client, const Arguments& arguments) {
    const auto print = [&](const JsonValue& result) {
        const JSONObject found(result);
        if (!arguments.has("json")) return ToolsTable::print(client, found);
        client.printJson(found.array("tools"));
        ToolsTable::printGaps(client, found);
    };
    return client.ask("tools", {}, print, HostStart::ifNeeded);
}

Outcome serveTools(HostContext& host, const JSONObject&) {
    host.tools.refresh([&tools = host.tools, answer = host.answer] { answer(ToolsTable::describe(tools)); });
    return Later{};
}

std::string toolNames() {
    std::string list;
    for (const AgentTool& tool : agentTools) {
        list += list.empty() ? "" : ", ";
        list += tool.id;
    }
    return list;
}

std::string message(const Failure& failure, const AgentTool& tool, const std::string& shell, const L10n& l10n) {
    using enum Failure::Reason;
    switch (failure.reason) {
        case otherRunning:
            return l10n.text("error.installRunning", failure.detail);
        case npmMissing:
            return l10n.text("error.npmMissing");
        case notInstalled:
            return l10n.text("error.toolMissing", tool.displayName, "orvane tools install " + std::string(tool.id));
        case notStarted:
            return l10n.text("onboarding.logError", failure.detail);
        case shellSilent:
            return l10n.text("error.shellSilent", shell);
        case failed:
            return l10n.text("onboarding.logFailed");
        case notFound:
            return l10n.text("error.toolNotFound", tool.binary);
    }
    std::unreachable();
}

/// Sends what was printed so far and from now on.
void streamInstall(HostContext& host) {
    const auto connection = host.connection.lock();
    if (!connection) return;
    const auto send = [weak = host.connection](std::string_view line) {
        if (const auto client = weak.lock()) client->stream(Json::write({{"line", line}}));
    };
    std::string_view before = host.tools.currentInstallLog();
    for (std::size_t end = 0; (end = before.find('\n')) != std::string_view::npos; before.remove_prefix(end + 1))
        send(before.substr(0, end));
    const auto subscription = std::make_shared<Registration>(host.tools.installPrinted.subscribe(send));
    connection->onClose([subscription] { subscription->reset(); });
}

/// A client that leaves does not stop the installation.
Outcome serveInstall(HostContext& host, const JSONObject& arguments, Order order) {
    const AgentTool* tool = ToolsTable::toolNamed(arguments.string("tool"));
    if (tool == nullptr) {
        return Refusal{.code = "usage",
                       .message = host.l10n.text("error.notATool", arguments.string("tool"), toolNames())};
    }
    if (const auto connection = host.connection.lock()) connection->beginStream();
    const auto ended = [tool, &tools = host.tools, l10n = host.l10n,
                        answer = host.answer](const std::expected<void, Failure>& result) {
        if (result) return answer(ToolsTable::describe(*tool, tools));
        answer(Refusal{.message = message(result.error(), *tool, tools.shell(), l10n)});
    };
    host.tools.install(*tool, order, ended);
    if (host.tools.toolInWork() == tool) streamInstall(host);
    return Streaming{};
}

Outcome serveInstallOf(HostContext& host, const JSONObject& arguments) {
    return serveInstall(host, arguments, Order::install);
}

Outcome serveUpdateOf(HostContext& host, const JSONObject& arguments) {
    return serveInstall(host, arguments, Order::update);
}

int follow(ClientContext& client, std::string_view verb, const Arguments& arguments) {
    return client.askStreaming(
        verb, {{"tool", arguments.value("tool")}},
        [&](const JSONObject& line) { client.output << line.string("line") << '\n'; },
        [&](const JsonValue& result) {
            const JSONObject tool(result);
            client.output << client.l10n.text("onboarding.logDone") << '\n';
            Columns columns;
            columns.add({tool.string("name"), tool.string("version", "-"), tool.string("path", "-")});
            client.output << columns.text();
        },
        HostStart::ifNeeded);
}

int runInstall(ClientContext& client, const Arguments& arguments) {
    return follow(client, "tools install", arguments);
}

int runUpdate(ClientContext& client, const Arguments& arguments) {
    return follow(client, "tools update", arguments);
}

constexpr Parameter toolParameter{.kind = Parameter::Kind::required, .name = "TOOL", .textKey = "help.parameter.tool"};

}  // namespace

Verb tools() {
    return {.name = "tools",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = runTools,
            .serve = serveTools};
}

Verb toolsInstall() {
    return {.name = "tools install", .parameters = {toolParameter}, .run = runInstall, .serve = serveInstallOf};
}

Verb toolsUpdate() {
    return {.name = "tools update", .parameters = {toolParameter}, .run = runUpdate, .serve = serveUpdateOf};
}

}  // namespace orvane::Verbs
