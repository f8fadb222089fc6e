#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

using Failure = ToolsManager::Failure;
using Order = ToolsManager::Order;

const AgentTool* toolNamed(std::string_view id) {
    const auto* const found = std::ranges::find(agentTools, id, &AgentTool::id);
    return found == agentTools.end() ? nullptr : found;
}

void printTable(ClientContext& client, const JsonArray& rows) {
    const L10n& l10n = client.l10n;
    Columns columns;
    columns.add({l10n.text("column.tool"), l10n.text("column.state"), l10n.text("column.version"),
                 l10n.text("column.signedIn"), l10n.text("column.path")});
    for (const JsonValue& row : rows) {
        const JSONObject tool(row);
        columns.add({tool.string("id"), l10n.text("tools.state." + tool.string("state")), tool.string("version", "-"),
                     l10n.text("tools.auth." + tool.string("auth")), tool.string("path", "-")});
    }
    client.output << columns.text();
}

/// What to do about a tool that cannot be used yet; empty when nothing is.
std::string hint(const JSONObject& row, bool hasNpm, const L10n& l10n) {
    const AgentTool* tool = toolNamed(row.string("id"));
    if (tool == nullptr) return {};
    const std::string id(tool->id);
    if (row.string("state") == "missing")
        return hasNpm ? l10n.text("tools.hint.install", tool->displayName, "orvane tools install " + id) : "";
    if (row.string("state") != "installed" || row.string("auth") != "notConnected") return {};
    return tool->loginCommand ? l10n.text("tools.hint.login", tool->displayName, *tool->loginCommand)
                              : l10n.text("tools.hint.start", tool->displayName, "orvane new " + id);
}

void printHints(ClientContext& client, const JsonArray& rows, bool hasNpm) {
    std::string hints;
    for (const JsonValue& row : rows) {
        if (const std::string line = hint(JSONObject(row), hasNpm, client.l10n); !line.empty()) hints += line + '\n';
    }
    if (!hasNpm) hints += client.l10n.text("error.npmMissing") + '\n';
    if (!hints.empty()) client.output << '\n' << hints;
}

int runTools(ClientContext& client, const Arguments& arguments) {
    const auto print = [&](const JsonValue& result) {
        const JSONObject object(result);
        const JsonArray& rows = object.array("tools");
        if (arguments.has("json")) {
            client.printJson(rows);
        } else {
            printTable(client, rows);
            printHints(client, rows, object.boolean("npm", true));
        }
        if (!object.boolean("complete", true))
            client.errors << client.l10n.text("tools.incomplete", object.string("shell")) << '\n';
    };
    return client.ask("tools", {}, print, HostStart::ifNeeded);
}

boost::json::object describe(const AgentTool& tool, const ToolsManager& tools) {
    const std::string id(tool.id);
    const ToolState& state = tools.states().at(id);
    boost::json::object row{{"id", tool.id},
                            {"name", tool.displayName},
                            {"state", state.name()},
                            {"auth", rawValue(tools.authStates().at(id))}};
    const auto* installed = std::get_if<ToolState::Installed>(&state.value);
    if (installed != nullptr && installed->version) row["version"] = *installed->version;
    if (const auto path = tools.binaryPaths().find(id); path != tools.binaryPaths().end()) row["path"] = path->second;
    return row;
}

JsonValue describe(const ToolsManager& tools, const std::string& shell) {
    boost::json::array rows;
    for (const AgentTool& tool : agentTools)
        rows.push_back(describe(tool, tools));
    return {{"tools", rows},
            {"npm", tools.npmAvailable() ? JsonValue(*tools.npmAvailable()) : JsonValue()},
            {"complete", tools.isComplete()},
            {"shell", shell}};
}

Outcome serveTools(HostContext& host, const JSONObject&) {
    host.tools.refresh([&tools = host.tools, answer = host.answer] { answer(describe(tools, tools.shell())); });
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
    const AgentTool* tool = toolNamed(arguments.string("tool"));
    if (tool == nullptr) {
        return Refusal{.code = "usage",
                       .message = host.l10n.text("error.notATool", arguments.string("tool"), toolNames())};
    }
    if (const auto connection = host.connection.lock()) connection->beginStream();
    const auto ended = [tool, &tools = host.tools, l10n = host.l10n,
                        answer = host.answer](const std::expected<void, Failure>& result) {
        if (result) return answer(JsonValue(describe(*tool, tools)));
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
