#include "OrvaneCore/Workspace/WorkspaceModel.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/ProjectList.h"
#include "OrvaneCore/Workspace/SurfaceMigration.h"

namespace orvane {

namespace {

std::set<Uuid> embeddableSurfaces(const std::vector<SurfaceMeta>& metas) {
    std::set<Uuid> embeddable;
    for (const SurfaceMeta& meta : metas) {
        if (isPaneEmbeddable(meta.kind)) embeddable.insert(meta.id);
    }
    return embeddable;
}

/// A file may name one leaf in two trees; a leaf is found by its id alone, so the later tree gets ids of its own.
SavedSurface withFreshLeaves(SavedSurface surface, const WorkspaceModel& model) {
    if (!surface.node) return surface;
    const auto isTaken = [&](const Uuid& leaf) { return model.paneOfLeaf(leaf).has_value(); };
    if (std::ranges::none_of(surface.node->leafIDs(), isTaken)) return surface;
    const auto contents = surface.node->contentIDs();
    surface.node = surface.node->template_({contents.begin(), contents.end()});
    surface.focusedPane.reset();
    return surface;
}

}  // namespace

const Project* WorkspaceModel::project(const Uuid& id) const {
    const auto found = std::ranges::find(projects, id, &Project::id);
    return found == projects.end() ? nullptr : &*found;
}

Uuid WorkspaceModel::addProject(const std::string& path) {
    auto addition = ProjectList::adding(path, std::move(projects));
    projects = std::move(addition.projects);
    if (surfaceMetas[addition.id].empty()) workspaceSurface(addition.id);
    return addition.id;
}

void WorkspaceModel::removeProject(const Uuid& id) {
    if (project(id) == nullptr) return;
    for (const SurfaceMeta& meta : surfaceMetas[id])
        dropSurface(meta.id);
    surfaceMetas.erase(id);
    activeSurfaceID.erase(id);
    collapsedProjects.erase(id);
    const auto place = std::ranges::find(projects, id, &Project::id) - projects.begin();
    projects = ProjectList::removing(id, std::move(projects));
    if (selectedProjectID != id) return;
    selectedProjectID.reset();
    selectedSessionID.reset();
    if (projects.empty()) return;
    selectProject(projects[std::min<std::size_t>(static_cast<std::size_t>(place), projects.size() - 1)].id);
}

void WorkspaceModel::toggleCollapsed(const Uuid& id) {
    if (project(id) == nullptr) return;
    if (collapsedProjects.erase(id) == 0) collapsedProjects.insert(id);
}

bool WorkspaceModel::allCollapsed() const {
    return !projects.empty() &&
           std::ranges::all_of(projects, [this](const Project& each) { return collapsedProjects.contains(each.id); });
}

void WorkspaceModel::selectProject(const Uuid& id) {
    if (project(id) == nullptr) return;
    selectedProjectID = id;
    selectFocusedSession();
}

void WorkspaceModel::selectSession(const Uuid& session, const Uuid& inProject) {
    if (project(inProject) == nullptr) return;
    selectedSessionID = session;
    selectedProjectID = inProject;
    if (const auto pane = paneShowing(session)) focusPane(pane->leaf);
}

/// The session of the focused pane of the tab that the selected project shows.
void WorkspaceModel::selectFocusedSession() {
    selectedSessionID.reset();
    if (!selectedProjectID) return;
    const auto active = activeSurfaceID.find(*selectedProjectID);
    if (active == activeSurfaceID.end()) return;
    const auto tree = surfaceTrees.find(active->second);
    const auto focused = focusedPanes.find(active->second);
    if (tree == surfaceTrees.end() || focused == focusedPanes.end()) return;
    const auto content = tree->second.contentID(focused->second);
    if (content && surface(*content) == nullptr) selectedSessionID = content;
}

SavedState WorkspaceModel::saved() const {
    SavedState state{.projects = projects,
                     .templates = templates,
                     .usageCounts = usageCounts,
                     .knownSlashCommands = knownSlashCommands,
                     .selectedProjectID = selectedProjectID,
                     .collapsedProjects = collapsedProjects,
                     .surfaces = std::map<Uuid, std::vector<SavedSurface>>(),
                     .activeSurfaces = activeSurfaceID,
                     .others = otherState};
    for (const auto& [projectID, metas] : surfaceMetas) {
        // Sessions do not survive a restart, so their ids are left out; surfaces in panes stay where they are.
        const std::set<Uuid> embeddable = embeddableSurfaces(metas);
        auto& surfaces = (*state.surfaces)[projectID];
        for (const SurfaceMeta& meta : metas) {
            SavedSurface& surface = surfaces.emplace_back(SavedSurface{.meta = meta, .node = {}, .focusedPane = {}});
            const auto tree = surfaceTrees.find(meta.id);
            if (tree == surfaceTrees.end()) continue;
            surface.node = tree->second.template_(embeddable);
            // The copy has fresh ids; the focus is the leaf at the same place.
            const auto focused = focusedPanes.find(meta.id);
            const auto focus = focused == focusedPanes.end() ? std::nullopt : std::optional(focused->second);
            surface.focusedPane = SurfaceMigration::focusedPane(focus, tree->second, *surface.node);
        }
    }
    state.layouts = SurfaceMigration::legacyLayouts(*state.surfaces, activeSurfaceID);
    return state;
}

WorkspaceModel WorkspaceModel::restoring(SavedState state, const std::string& workspaceTitle) {
    state = state.completed(workspaceTitle);
    WorkspaceModel model;
    model.workspaceTitle = workspaceTitle;
    model.projects = std::move(state.projects);
    model.templates = std::move(state.templates);
    model.usageCounts = std::move(state.usageCounts);
    model.knownSlashCommands = std::move(state.knownSlashCommands);
    model.collapsedProjects = std::move(state.collapsedProjects);
    model.otherState = std::move(state.others);
    model.selectedProjectID = state.selectedProjectID;
    for (auto& [projectID, surfaces] : *state.surfaces) {
        for (SavedSurface& surface : surfaces)
            model.install(projectID, withFreshLeaves(std::move(surface), model));
        model.dropForeignContents(projectID);
        model.activateSurface(state.activeSurfaces.at(projectID));
    }
    return model;
}

/// Empties the panes that show no surface of the project which fits into a pane: a session of an earlier run, or a
/// surface that this build could not read. Nothing could close them.
void WorkspaceModel::dropForeignContents(const Uuid& projectID) {
    const std::set<Uuid> kept = embeddableSurfaces(surfaceMetas[projectID]);
    for (const SurfaceMeta& meta : surfaceMetas[projectID]) {
        const auto tree = surfaceTrees.find(meta.id);
        if (tree == surfaceTrees.end()) continue;
        for (const Uuid& content : tree->second.contentIDs()) {
            if (!kept.contains(content)) tree->second = tree->second.clearing(content);
        }
    }
}

}  // namespace orvane
