#include "OrvaneCore/Workspace/SavedState.h"

#include <algorithm>
#include <array>
#include <boost/json.hpp>
#include <string_view>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Workspace/SurfaceMigration.h"
#include "OrvaneCore/Workspace/UniqueIDs.h"

namespace orvane {

namespace {

using Document = JSONObject;
/// The value of a member, or none to leave it out.
using Written = std::optional<JsonValue>;

std::vector<Project> readProjects(const Document& document) {
    std::vector<Project> projects;
    UniqueIDs ids;
    for (Project& project : document.list("projects", Project::decode)) {
        if (std::ranges::find(projects, project) != projects.end()) continue;
        project.id = ids.claim(project.id);
        projects.push_back(std::move(project));
    }
    return projects;
}

std::vector<PaneTemplate> readTemplates(const Document& document) {
    std::vector<PaneTemplate> templates = document.list("templates", PaneTemplate::decode);
    UniqueIDs ids;
    for (PaneTemplate& entry : templates)
        entry.id = ids.claim(entry.id);
    return templates;
}

std::map<std::string, std::int64_t> readUsageCounts(const Document& document) {
    std::map<std::string, std::int64_t> counts;
    const JSONObject object = document.object("usageCounts");
    object.forEach([&](std::string_view key, const JsonValue&) {
        const auto count = object.optionalInteger(key);
        if (count && *count >= 0) counts.emplace(key, *count);
    });
    return counts;
}

std::map<std::string, std::vector<std::string>> readSlashCommands(const Document& document) {
    std::map<std::string, std::vector<std::string>> commands;
    const JSONObject object = document.object("knownSlashCommands");
    object.forEach([&](std::string_view key, const JsonValue& value) {
        if (value.is_array()) commands.emplace(key, object.strings(key));
    });
    return commands;
}

std::set<Uuid> readCollapsed(const Document& document) {
    std::set<Uuid> ids;
    for (const std::string& text : document.strings("collapsedProjects")) {
        if (const auto id = Uuid::parse(text)) ids.insert(*id);
    }
    return ids;
}

std::map<Uuid, PaneNode> readLayouts(const Document& document) {
    std::map<Uuid, PaneNode> layouts;
    document.object("layouts").forEach([&](std::string_view key, const JsonValue& value) {
        const auto project = Uuid::parse(key);
        auto tree = project ? PaneNode::decode(value) : std::nullopt;
        if (tree) layouts.emplace(*project, *std::move(tree));
    });
    return layouts;
}

std::map<Uuid, std::vector<RestorableSession>> readRestorable(const Document& document) {
    std::map<Uuid, std::vector<RestorableSession>> restorable;
    const JSONObject object = document.object("restorable");
    object.forEach([&](std::string_view key, const JsonValue&) {
        const auto project = Uuid::parse(key);
        auto sessions = project ? object.list(key, RestorableSession::decode) : std::vector<RestorableSession>();
        if (!sessions.empty()) restorable.emplace(*project, std::move(sessions));
    });
    return restorable;
}

std::optional<std::map<Uuid, std::vector<SavedSurface>>> readSurfaces(const Document& document) {
    const JsonValue* member = document.find("surfaces");
    if (member == nullptr || !member->is_object()) return std::nullopt;
    const JSONObject object(*member);
    std::map<Uuid, std::vector<SavedSurface>> surfaces;
    UniqueIDs ids;
    object.forEach([&](std::string_view key, const JsonValue&) {
        const auto project = Uuid::parse(key);
        if (!project) return;
        std::vector<SavedSurface>& strip = surfaces[*project];
        for (SavedSurface& surface : object.list(key, SavedSurface::decode)) {
            surface.meta.id = ids.claim(surface.meta.id);
            strip.push_back(std::move(surface));
        }
    });
    return surfaces;
}

std::map<Uuid, Uuid> readActiveSurfaces(const Document& document) {
    std::map<Uuid, Uuid> active;
    const JSONObject object = document.object("activeSurfaces");
    object.forEach([&](std::string_view key, const JsonValue&) {
        const auto project = Uuid::parse(key);
        const auto surface = object.uuid(key);
        if (project && surface) active.emplace(*project, *surface);
    });
    return active;
}

Written writeUsageCounts(const SavedState& state) {
    boost::json::object object;
    for (const auto& [key, count] : state.usageCounts)
        object[key] = count;
    return object;
}

Written writeSlashCommands(const SavedState& state) {
    boost::json::object object;
    for (const auto& [key, commands] : state.knownSlashCommands) {
        object[key] = JsonArray(commands.begin(), commands.end());
    }
    return object;
}

Written writeSelected(const SavedState& state) {
    if (!state.selectedProjectID) return std::nullopt;
    return JsonValue(state.selectedProjectID->upperText());
}

Written writeCollapsed(const SavedState& state) {
    JsonArray array;
    for (const Uuid& id : state.collapsedProjects)
        array.push_back(JsonValue(id.upperText()));
    return array;
}

Written writeLayouts(const SavedState& state) {
    boost::json::object object;
    for (const auto& [project, tree] : state.layouts)
        object[project.upperText()] = tree.encode();
    return object;
}

Written writeRestorable(const SavedState& state) {
    boost::json::object object;
    for (const auto& [project, sessions] : state.restorable)
        object[project.upperText()] = encodedList(sessions);
    return object;
}

Written writeSurfaces(const SavedState& state) {
    if (!state.surfaces) return std::nullopt;
    boost::json::object object;
    for (const auto& [project, strip] : *state.surfaces)
        object[project.upperText()] = encodedList(strip);
    return object;
}

Written writeActiveSurfaces(const SavedState& state) {
    boost::json::object object;
    for (const auto& [project, surface] : state.activeSurfaces)
        object[project.upperText()] = surface.upperText();
    return object;
}

/// One top-level member: how it is read from the whole document and how it is written.
struct Member {
    std::string_view key;
    void (*read)(const Document& document, SavedState& state);
    Written (*write)(const SavedState& state);
};

constexpr std::array members = {
    Member{.key = "projects",
           .read = [](const Document& document, SavedState& state) { state.projects = readProjects(document); },
           .write = [](const SavedState& state) -> Written { return encodedList(state.projects); }},
    Member{.key = "templates",
           .read = [](const Document& document, SavedState& state) { state.templates = readTemplates(document); },
           .write = [](const SavedState& state) -> Written { return encodedList(state.templates); }},
    Member{.key = "layouts",
           .read = [](const Document& document, SavedState& state) { state.layouts = readLayouts(document); },
           .write = writeLayouts},
    Member{.key = "restorable",
           .read = [](const Document& document, SavedState& state) { state.restorable = readRestorable(document); },
           .write = writeRestorable},
    Member{.key = "usageCounts",
           .read = [](const Document& document, SavedState& state) { state.usageCounts = readUsageCounts(document); },
           .write = writeUsageCounts},
    Member{.key = "knownSlashCommands",
           .read = [](const Document& document,
                      SavedState& state) { state.knownSlashCommands = readSlashCommands(document); },
           .write = writeSlashCommands},
    Member{.key = "selectedProjectID",
           .read = [](const Document& document,
                      SavedState& state) { state.selectedProjectID = document.uuid("selectedProjectID"); },
           .write = writeSelected},
    Member{
        .key = "collapsedProjects",
        .read = [](const Document& document, SavedState& state) { state.collapsedProjects = readCollapsed(document); },
        .write = writeCollapsed},
    Member{.key = "surfaces",
           .read = [](const Document& document, SavedState& state) { state.surfaces = readSurfaces(document); },
           .write = writeSurfaces},
    Member{.key = "activeSurfaces",
           .read = [](const Document& document,
                      SavedState& state) { state.activeSurfaces = readActiveSurfaces(document); },
           .write = writeActiveSurfaces},
};

bool isMember(std::string_view key) {
    return std::ranges::find(members, key, &Member::key) != members.end();
}

void complete(SavedSurface& surface) {
    if (!ownsPaneTree(surface.meta.kind)) {
        surface.node.reset();
    } else if (!surface.node) {
        surface.node = PaneNode::single();
    }
    const bool focusStands = surface.node && surface.focusedPane && surface.node->contains(*surface.focusedPane);
    if (!focusStands) surface.focusedPane.reset();
}

/// The id of the surface that a project shows: the one saved when it stands in the strip, else the first.
Uuid activeSurface(const SavedState& state, const Uuid& project, const std::vector<SavedSurface>& strip) {
    const auto saved = state.activeSurfaces.find(project);
    const bool stands =
        saved != state.activeSurfaces.end() &&
        std::ranges::any_of(strip, [&](const SavedSurface& surface) { return surface.meta.id == saved->second; });
    return stands ? saved->second : strip.front().meta.id;
}

}  // namespace

JsonValue SavedState::encode() const {
    boost::json::object document = others;
    for (const Member& member : members) {
        if (auto value = member.write(*this)) document[member.key] = *std::move(value);
    }
    return document;
}

std::optional<SavedState> SavedState::decode(const JsonValue& json) {
    const JSONObject document(json);
    const JsonValue* projects = document.find("projects");
    if (projects == nullptr || !projects->is_array()) return std::nullopt;
    SavedState state;
    for (const Member& member : members)
        member.read(document, state);
    document.forEach([&](std::string_view key, const JsonValue& value) {
        if (!isMember(key)) state.others[key] = value;
    });
    return state;
}

SavedState SavedState::completed(const std::string& defaultTitle) const {
    SavedState result = *this;
    const auto saved = surfaces ? *surfaces : SurfaceMigration::migrate(layouts, {}, defaultTitle);
    std::map<Uuid, std::vector<SavedSurface>> strips;
    result.activeSurfaces.clear();
    std::set<Uuid> known;
    for (const Project& project : projects) {
        known.insert(project.id);
        std::vector<SavedSurface>& strip = strips[project.id];
        if (saved.contains(project.id)) strip = saved.at(project.id);
        if (strip.empty()) strip.push_back(SavedSurface::workspace(defaultTitle));
        std::ranges::for_each(strip, complete);
        result.activeSurfaces[project.id] = activeSurface(*this, project.id, strip);
    }
    result.layouts = SurfaceMigration::legacyLayouts(strips, result.activeSurfaces);
    result.surfaces = std::move(strips);
    std::erase_if(result.restorable, [&](const auto& entry) { return !known.contains(entry.first); });
    std::erase_if(result.collapsedProjects, [&](const Uuid& id) { return !known.contains(id); });
    if (selectedProjectID && !known.contains(*selectedProjectID)) result.selectedProjectID.reset();
    return result;
}

}  // namespace orvane
