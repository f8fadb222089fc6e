#include <algorithm>
#include <boost/json.hpp>
#include <iterator>
#include <ostream>
#include <utility>

#include "OrvaneCore/Agents/AgentSpecCatalog.h"
#include "OrvaneCore/Support/IdPrefix.h"
#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;

constexpr Parameter agentParameter{.kind = Kind::required, .name = "AGENT", .textKey = "help.parameter.agent"};

std::string agentsTable(const L10n& l10n, const JsonArray& rows) {
    if (rows.empty()) return l10n.text("agents.empty") + "\n";
    std::vector<Uuid> ids;
    ids.reserve(rows.size());
    for (const JsonValue& row : rows)
        ids.push_back(JSONObject(row).uuid("id").value_or(Uuid()));
    const std::size_t length = IdPrefix::distinguishingLength(ids);
    Columns columns;
    columns.add({l10n.text("column.id"), l10n.text("column.name"), l10n.text("column.color"),
                 l10n.text("column.patterns"), l10n.text("column.command")});
    for (const JsonValue& row : rows) {
        const JSONObject agent(row);
        const std::string color = agent.string("colorHex");
        const auto patterns = agent.array("busyPatterns").size() + agent.array("waitingPatterns").size();
        columns.add({agent.string("id").substr(0, length), agent.string("name"), color.empty() ? "-" : color,
                     std::to_string(patterns), agent.string("command")});
    }
    return columns.text();
}

std::string suggestionsTable(const L10n& l10n, const JsonArray& rows) {
    if (rows.empty()) return "";
    Columns columns;
    for (const JsonValue& row : rows)
        columns.add({"  " + JSONObject(row).string("name"), JSONObject(row).string("command")});
    return "\n" + l10n.text("agents.suggested") + "\n" + columns.text();
}

int runAgents(ClientContext& client, const Arguments& arguments) {
    return client.ask("agents", {}, [&](const JsonValue& result) {
        const JSONObject lists(result);
        if (arguments.has("json")) return client.printJson(lists.array("agents"));
        client.output << agentsTable(client.l10n, lists.array("agents"))
                      << suggestionsTable(client.l10n, lists.array("presets"));
    });
}

Outcome serveAgents(HostContext& host, const JSONObject&) {
    boost::json::array agents;
    for (const AgentSpec& spec : host.agents.specs()) {
        JsonValue row = spec.encode();
        row.as_object()["id"] = spec.id.lowerText();
        agents.push_back(std::move(row));
    }
    boost::json::array presets;
    for (const AgentSpec& preset : AgentSpecCatalog::presetsMissing(host.agents.specs()))
        presets.push_back({{"name", preset.name}, {"command", preset.command}});
    return JsonValue{{"agents", std::move(agents)}, {"presets", std::move(presets)}};
}

std::string presetNames() {
    std::string names;
    for (const AgentSpec& preset : AgentSpecCatalog::presets())
        names += (names.empty() ? "" : ", ") + preset.name;
    return names;
}

std::string explanation(const L10n& l10n, AgentSpec::ValidationError error, const std::string& name) {
    switch (error) {
        case AgentSpec::ValidationError::emptyName:
            return l10n.text("error.emptyName");
        case AgentSpec::ValidationError::emptyCommand:
            return l10n.text("error.emptyCommand", presetNames());
        case AgentSpec::ValidationError::duplicateName:
            return l10n.text("error.agentNameTaken", Text::oneLine(name));
    }
    std::unreachable();
}

Refusal refusal(const L10n& l10n, const CustomAgentStore::Error& error, const std::string& name) {
    using namespace AgentSpecCheck;
    return {
        .message = std::visit(
            Overloaded{
                [&](AgentSpec::ValidationError found) { return explanation(l10n, found, name); },
                [&](const InvalidColor& color) { return l10n.text("error.notAHexColor", color.text); },
                [&](const InvalidPattern& found) { return l10n.text("error.badPattern", found.pattern, found.reason); },
                [&](const NulInCommand&) { return l10n.text("error.nulInCommand"); },
            },
            error)};
}

/// Takes over what a request gives, and says whether that was anything.
bool apply(const JSONObject& arguments, AgentSpec& spec) {
    static constexpr std::pair<const char*, std::string AgentSpec::*> texts[] = {{"name", &AgentSpec::name},
                                                                                 {"command", &AgentSpec::command},
                                                                                 {"symbol", &AgentSpec::symbol},
                                                                                 {"color", &AgentSpec::colorHex}};
    static constexpr std::pair<const char*, std::vector<std::string> AgentSpec::*> lists[] = {
        {"busy", &AgentSpec::busyPatterns}, {"waiting", &AgentSpec::waitingPatterns}};
    bool isAnything = false;
    for (const auto& [key, field] : texts) {
        auto text = arguments.optionalString(key);
        if (!text) continue;
        spec.*field = *std::move(text);
        isAnything = true;
    }
    for (const auto& [key, field] : lists) {
        const JsonValue* given = arguments.find(key);
        if (given == nullptr || !given->is_array()) continue;
        spec.*field = arguments.strings(key);
        isAnything = true;
    }
    return isAnything;
}

int runAdd(ClientContext& client, const Arguments& arguments) {
    auto request = client.requestOf(arguments);
    if (!request) return request.error();
    return client.ask("agents add", *std::move(request),
                      [&](const JsonValue& result) { client.output << JSONObject(result).string("id") << '\n'; });
}

Outcome serveAdd(HostContext& host, const JSONObject& arguments) {
    AgentSpec spec;
    if (!arguments.contains("command")) {
        const std::string name = arguments.string("name");
        spec = AgentSpecCatalog::preset(Text::trimmed(name)).value_or(AgentSpec());
        spec.name.clear();
    }
    apply(arguments, spec);
    const auto added = host.agents.add(spec);
    if (!added) return refusal(host.l10n, added.error(), spec.name);
    return JsonValue{{"id", added->lowerText()}};
}

int runEdit(ClientContext& client, const Arguments& arguments) {
    auto request = client.requestOf(arguments);
    if (!request) return request.error();
    return client.ask("agents edit", *std::move(request), [](const JsonValue&) {});
}

Outcome serveEdit(HostContext& host, const JSONObject& arguments) {
    auto spec = Selection::agent(host, arguments.string("agent"));
    if (!spec) return spec.error();
    if (!apply(arguments, *spec)) return Refusal{.code = "usage", .message = host.l10n.text("usage.nothingToChange")};
    const auto edited = host.agents.edit(*spec);
    if (!edited) return refusal(host.l10n, edited.error(), spec->name);
    return JsonValue();
}

int runRemove(ClientContext& client, const Arguments& arguments) {
    return client.ask("agents remove", {{"agent", arguments.value("agent")}}, [](const JsonValue&) {});
}

Outcome serveRemove(HostContext& host, const JSONObject& arguments) {
    const auto spec = Selection::agent(host, arguments.string("agent"));
    if (!spec) return spec.error();
    host.agents.remove(spec->id);
    return JsonValue();
}

/// `first`, then what can be said of an agent.
std::vector<Parameter> agentParameters(std::vector<Parameter> first) {
    const Parameter further[] = {
        {.kind = Kind::option, .name = "--command", .valueName = "C", .textKey = "help.parameter.agentCommand"},
        {.kind = Kind::option, .name = "--color", .valueName = "HEX", .textKey = "help.parameter.agentColor"},
        {.kind = Kind::option, .name = "--symbol", .valueName = "S", .textKey = "help.parameter.symbol"},
        {.kind = Kind::repeated, .name = "--busy", .valueName = "PATTERN", .textKey = "help.parameter.busy"},
        {.kind = Kind::repeated, .name = "--waiting", .valueName = "PATTERN", .textKey = "help.parameter.waiting"}};
    first.insert(first.end(), std::begin(further), std::end(further));
    return first;
}

}  // namespace

Verb agents() {
    return {.name = "agents",
            .parameters = {{.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = runAgents,
            .serve = serveAgents};
}

Verb agentsAdd() {
    return {.name = "agents add",
            .parameters =
                agentParameters({{.kind = Kind::required, .name = "NAME", .textKey = "help.parameter.agentName"}}),
            .run = runAdd,
            .serve = serveAdd};
}

Verb agentsEdit() {
    return {.name = "agents edit",
            .parameters = agentParameters(
                {agentParameter,
                 {.kind = Kind::option, .name = "--name", .valueName = "N", .textKey = "help.parameter.name"}}),
            .run = runEdit,
            .serve = serveEdit};
}

Verb agentsRemove() {
    return {.name = "agents remove", .parameters = {agentParameter}, .run = runRemove, .serve = serveRemove};
}

}  // namespace orvane::Verbs
