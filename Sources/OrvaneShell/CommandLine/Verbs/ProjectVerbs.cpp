#include <boost/json.hpp>
#include <charconv>
#include <ostream>

#include "OrvaneCore/Support/IdPrefix.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

constexpr Parameter projectParameter{
    .kind = Parameter::Kind::required, .name = "PROJECT", .textKey = "help.parameter.project"};

void nothing(const JsonValue&) {}

int runProjects(ClientContext& client, const Arguments& arguments) {
    return client.ask("projects", {}, [&](const JsonValue& result) {
        if (arguments.has("json")) return client.printJson(result);
        if (!result.is_array() || result.get_array().empty()) {
            client.output << client.l10n.text("projects.empty") << '\n';
            return;
        }
        std::vector<Uuid> ids;
        for (const JsonValue& row : result.get_array())
            ids.push_back(JSONObject(row).uuid("id").value_or(Uuid()));
        const std::size_t length = IdPrefix::distinguishingLength(ids);
        const L10n& l10n = client.l10n;
        Columns columns;
        columns.add(
            {l10n.text("column.id"), l10n.text("column.name"), l10n.text("column.branch"), l10n.text("column.folder")});
        for (const JsonValue& row : result.get_array()) {
            const JSONObject project(row);
            columns.add({project.string("id").substr(0, length), project.string("name"), project.string("branch", "-"),
                         project.string("path")});
        }
        client.output << columns.text();
    });
}

Outcome serveProjects(HostContext& host, const JSONObject&) {
    boost::json::array rows;
    for (const Project& project : host.store.workspace().projects) {
        const auto branch = host.store.gitBranches().find(project.id);
        const bool hasBranch = branch != host.store.gitBranches().end();
        rows.push_back({{"id", project.id.lowerText()},
                        {"name", project.name},
                        {"path", project.path},
                        {"branch", hasBranch ? JsonValue(branch->second) : JsonValue()}});
    }
    return JsonValue(std::move(rows));
}

int runRename(ClientContext& client, const Arguments& arguments) {
    return client.ask("rename",
                      {{"project", client.projectText(arguments.value("project"))}, {"name", arguments.value("name")}},
                      nothing);
}

Outcome serveRename(HostContext& host, const JSONObject& arguments) {
    const auto project = Selection::project(host, arguments.string("project"));
    if (!project) return project.error();
    const std::string name = Text::oneLine(arguments.string("name"));
    if (name.empty()) return Refusal{.message = host.l10n.text("error.emptyName")};
    host.store.renameProject(*project, name);
    return JsonValue();
}

int runColor(ClientContext& client, const Arguments& arguments) {
    return client.ask(
        "color", {{"project", client.projectText(arguments.value("project"))}, {"color", arguments.value("color")}},
        nothing);
}

/// A place in the palette, counted from 0, or a colour name of it in any case.
std::optional<std::int64_t> paletteIndex(const HostContext& host, const std::string& text) {
    std::int64_t index = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    const auto size = static_cast<std::int64_t>(ProjectPalette::colors.size());
    if (error == std::errc() && end == text.data() + text.size()) {
        return index >= 0 && index < size ? std::optional(index) : std::nullopt;
    }
    for (index = 0; index < size; ++index) {
        const auto key = ProjectPalette::colors[static_cast<std::size_t>(index)].nameKey;
        if (Text::equalsIgnoringCase(host.l10n.text(key), text) || Text::equalsIgnoringCase(L10n().text(key), text)) {
            return index;
        }
    }
    return std::nullopt;
}

Outcome serveColor(HostContext& host, const JSONObject& arguments) {
    const auto project = Selection::project(host, arguments.string("project"));
    if (!project) return project.error();
    const std::string color = arguments.string("color");
    if (const auto index = paletteIndex(host, color)) {
        host.store.setProjectColor(*project, *index);
    } else if (ProjectPalette::colorHex(color)) {
        host.store.setProjectCustomColor(*project, color, AppStore::Save::yes);
    } else {
        return Refusal{.message = host.l10n.text("error.notAColor", color, ProjectPalette::colors.size() - 1)};
    }
    return JsonValue();
}

int runMove(ClientContext& client, const Arguments& arguments) {
    return client.ask("move",
                      {{"project", client.projectText(arguments.value("project"))},
                       {"target", client.projectText(arguments.value("target"))}},
                      nothing);
}

Outcome serveMove(HostContext& host, const JSONObject& arguments) {
    const auto project = Selection::project(host, arguments.string("project"));
    if (!project) return project.error();
    const auto target = Selection::project(host, arguments.string("target"));
    if (!target) return target.error();
    host.store.moveProject(*project, *target);
    return JsonValue();
}

int runRemove(ClientContext& client, const Arguments& arguments) {
    boost::json::object request{{"project", client.projectText(arguments.value("project"))}};
    if (arguments.has("force")) request["force"] = true;
    return client.ask("remove", std::move(request), nothing);
}

Outcome serveRemove(HostContext& host, const JSONObject& arguments) {
    const auto id = Selection::project(host, arguments.string("project"));
    if (!id) return id.error();
    long long active = 0;
    for (const SessionController* session : host.store.activeSessions()) {
        if (session->identity().projectID == *id) ++active;
    }
    if (active > 0 && !arguments.boolean("force")) {
        const std::string name = host.store.workspace().project(*id)->name;
        return Refusal{.code = "confirm",
                       .message = host.l10n.plural("remove.refused", active, name),
                       .details = {{"title", host.l10n.text("remove.title", name)},
                                   {"info", host.l10n.plural("quit.subtitle", active)},
                                   {"confirm", host.l10n.text("remove.confirm")},
                                   {"cancel", host.l10n.text("common.cancel")}}};
    }
    host.store.removeProject(*id);
    return JsonValue();
}

}  // namespace

Verb projects() {
    return {.name = "projects",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = runProjects,
            .serve = serveProjects};
}

Verb rename() {
    return {.name = "rename",
            .parameters = {projectParameter,
                           {.kind = Parameter::Kind::required, .name = "NAME", .textKey = "help.parameter.name"}},
            .run = runRename,
            .serve = serveRename};
}

Verb color() {
    return {.name = "color",
            .parameters = {projectParameter,
                           {.kind = Parameter::Kind::required, .name = "COLOR", .textKey = "help.parameter.color"}},
            .run = runColor,
            .serve = serveColor};
}

Verb move() {
    return {.name = "move",
            .parameters = {projectParameter,
                           {.kind = Parameter::Kind::required, .name = "TARGET", .textKey = "help.parameter.target"}},
            .run = runMove,
            .serve = serveMove};
}

Verb remove() {
    return {.name = "remove",
            .parameters = {projectParameter,
                           {.kind = Parameter::Kind::flag, .name = "--force", .textKey = "help.parameter.force"}},
            .run = runRemove,
            .serve = serveRemove};
}

}  // namespace orvane::Verbs
