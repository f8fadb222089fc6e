#include <fmt/format.h>

#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

/// {"pane":{id,content}} or {"split":{id,axis,fractions,children}}, ids as people see them.
JsonValue describe(const PaneNode& node) {
    return std::visit(Overloaded{[](const PaneNode::Leaf& leaf) -> JsonValue {
                                     const JsonValue content =
                                         leaf.contentID ? JsonValue(leaf.contentID->lowerText()) : JsonValue();
                                     return {{"pane", {{"id", leaf.id.lowerText()}, {"content", content}}}};
                                 },
                                 [](const PaneNode::Split& split) -> JsonValue {
                                     boost::json::array children;
                                     for (const PaneNode& child : split.children)
                                         children.push_back(describe(child));
                                     boost::json::object object{{"id", split.id.lowerText()},
                                                                {"axis", rawValue(split.axis)},
                                                                {"fractions", boost::json::value_from(split.fractions)},
                                                                {"children", std::move(children)}};
                                     return {{"split", std::move(object)}};
                                 }},
                      node.value);
}

/// One line a node, indented by its depth.
void printTree(ClientContext& client, const JSONObject& node, const std::string& share, std::size_t depth) {
    const std::string indent(2 * depth, ' ');
    if (node.contains("pane")) {
        const JSONObject pane = node.object("pane");
        client.output << indent << share << client.l10n.text("layout.pane", pane.string("id")) << "  "
                      << pane.string("content", client.l10n.text("layout.emptyPane")) << '\n';
        return;
    }
    const JSONObject split = node.object("split");
    client.output << indent << share << client.l10n.text("layout.split." + split.string("axis")) << '\n';
    const JsonArray& fractions = split.array("fractions");
    std::size_t index = 0;
    for (const JsonValue& child : split.array("children")) {
        const double fraction = index < fractions.size() ? fractions[index].to_number<double>() : 0;
        printTree(client, JSONObject(child), fmt::format("{:3.0f} %  ", fraction * 100), depth + 1);
        ++index;
    }
}

void print(ClientContext& client, const Arguments& arguments, const JsonValue& result) {
    if (arguments.has("json")) return client.printJson(result);
    const JSONObject layout(result);
    if (!arguments.value("name").empty() || !arguments.value("save").empty()) {
        const auto unplaced = layout.strings("unplaced");
        if (unplaced.empty()) return;
        const auto count = static_cast<long long>(unplaced.size());
        client.errors << client.l10n.plural("layout.unplaced", count) << '\n';
        return;
    }
    client.output << layout.string("title") << "  " << layout.string("surface") << '\n';
    printTree(client, layout.object("tree"), {}, 1);
    client.output << '\n';
    Columns columns;
    for (const JsonValue& each : layout.array("layouts")) {
        const JSONObject choice(each);
        columns.add({"  " + choice.string("name"), choice.string("text")});
    }
    client.output << client.l10n.text("layout.choices") << '\n' << columns.text();
}

int run(ClientContext& client, const Arguments& arguments) {
    boost::json::object request;
    for (const auto& [name, value] : arguments.values)
        request[name] = value;
    if (request.contains("project")) request["project"] = client.projectText(arguments.value("project"));
    return client.ask("layout", std::move(request), [&](const JsonValue& result) { print(client, arguments, result); });
}

/// The workspace that is meant: the tab that was named, else the one that the named or the selected project shows.
std::expected<Uuid, Refusal> workspaceSurface(const HostContext& host, const JSONObject& arguments) {
    const WorkspaceModel& workspace = host.store.workspace();
    if (const auto tab = arguments.optionalString("tab")) {
        std::vector<Uuid> surfaces;
        surfaces.reserve(workspace.surfaceTrees.size());
        for (const auto& [surface, tree] : workspace.surfaceTrees)
            surfaces.push_back(surface);
        return Selection::among(host, *tab, surfaces);
    }
    std::optional<Uuid> project = workspace.selectedProjectID;
    if (const auto named = arguments.optionalString("project")) {
        const auto found = Selection::project(host, *named);
        if (!found) return std::unexpected(found.error());
        project = *found;
    }
    if (!project) return std::unexpected(Refusal{.message = host.l10n.text("error.noProject")});
    return host.store.workspaceSurface(*project);
}

std::expected<PaneNode, Refusal> layoutNamed(const HostContext& host, const std::string& name) {
    if (const PaneLayout* layout = PaneLayout::named(name)) return layout->build();
    const auto& templates = host.store.workspace().templates;
    const auto saved = std::ranges::find(templates, name, &PaneTemplate::name);
    if (saved != templates.end()) return saved->node;
    return std::unexpected(Refusal{.message = host.l10n.text("error.noLayout", name)});
}

JsonValue choices(const HostContext& host) {
    boost::json::array list;
    for (const PaneLayout& layout : PaneLayout::all) {
        list.push_back({{"name", layout.name}, {"text", host.l10n.text(layout.textKey)}});
    }
    for (const PaneTemplate& saved : host.store.workspace().templates) {
        list.push_back({{"name", saved.name}, {"text", host.l10n.text("layout.saved")}});
    }
    return list;
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto surface = workspaceSurface(host, arguments);
    if (!surface) return surface.error();
    boost::json::array unplaced;
    if (const std::string name = arguments.string("name"); !name.empty()) {
        const auto layout = layoutNamed(host, name);
        if (!layout) return layout.error();
        for (const Uuid& content : host.store.applyLayout(*layout, *surface))
            unplaced.push_back(JsonValue(content.lowerText()));
    }
    if (arguments.contains("save")) {
        const std::string name = Text::oneLine(arguments.string("save"));
        if (name.empty()) return Refusal{.message = host.l10n.text("error.emptyName")};
        if (PaneLayout::named(name) != nullptr)
            return Refusal{.message = host.l10n.text("error.layoutNameTaken", name)};
        host.store.saveTemplate(name, *surface);
    }
    const WorkspaceModel& workspace = host.store.workspace();
    return JsonValue{{"surface", surface->lowerText()},
                     {"title", workspace.surface(*surface)->title},
                     {"tree", describe(workspace.surfaceTrees.at(*surface))},
                     {"unplaced", std::move(unplaced)},
                     {"layouts", choices(host)}};
}

}  // namespace

Verb layout() {
    using Kind = Parameter::Kind;
    return {
        .name = "layout",
        .parameters =
            {{.kind = Kind::optional, .name = "NAME", .textKey = "help.parameter.layout"},
             {.kind = Kind::option, .name = "--project", .valueName = "PROJECT", .textKey = "help.parameter.project"},
             {.kind = Kind::option, .name = "--tab", .valueName = "TAB", .textKey = "help.parameter.tab"},
             {.kind = Kind::option, .name = "--save", .valueName = "NAME", .textKey = "help.parameter.saveLayout"},
             {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
        .run = run,
        .serve = serve};
}

}  // namespace orvane::Verbs
