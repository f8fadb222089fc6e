#include "OrvaneShell/CommandLine/Verbs/ToolsTable.h"

#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/Columns.h"

namespace orvane::ToolsTable {

const AgentTool* toolNamed(std::string_view id) {
    const auto* const found = std::ranges::find(agentTools, id, &AgentTool::id);
    return found == agentTools.end() ? nullptr : found;
}

namespace {

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

}  // namespace

JsonValue describe(const AgentTool& tool, const ToolsManager& tools) {
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

JsonValue describe(const ToolsManager& tools) {
    boost::json::array rows;
    for (const AgentTool& tool : agentTools)
        rows.push_back(describe(tool, tools));
    return {{"tools", rows},
            {"npm", tools.npmAvailable() ? JsonValue(*tools.npmAvailable()) : JsonValue()},
            {"complete", tools.isComplete()},
            {"shell", tools.shell()}};
}

void print(ClientContext& client, const JSONObject& found) {
    printTable(client, found.array("tools"));
    printHints(client, found.array("tools"), found.boolean("npm", true));
    printGaps(client, found);
}

void printGaps(ClientContext& client, const JSONObject& found) {
    if (found.boolean("complete", true)) return;
    client.errors << client.l10n.text("tools.incomplete", found.string("shell")) << '\n';
}

}  // namespace orvane::ToolsTable
