#include <utility>

#include "Orvane/Workspace/AppStore.h"
#include "OrvaneCore/Workspace/ProjectList.h"

namespace orvane {

Uuid AppStore::addProject(const std::string& path) {
    const std::size_t before = workspace_.projects.size();
    const Uuid id = workspace_.addProject(path);
    if (workspace_.projects.size() == before) return id;
    tally_.raise("project_add");
    if (!workspace_.selectedProjectID) workspace_.selectProject(id);
    if (isActive()) readBranch(*workspace_.project(id));
    committed();
    return id;
}

void AppStore::selectProject(const Uuid& id) {
    if (workspace_.project(id) == nullptr || workspace_.selectedProjectID == id) return;
    workspace_.selectProject(id);
    committed();
}

void AppStore::renameProject(const Uuid& id, const std::string& name) {
    workspace_.projects = ProjectList::renaming(id, name, std::move(workspace_.projects));
    committed();
}

void AppStore::setProjectColor(const Uuid& id, std::int64_t index) {
    workspace_.projects = ProjectList::coloring(id, index, std::move(workspace_.projects));
    committed();
}

void AppStore::setProjectCustomColor(const Uuid& id, const std::string& hex, Save save) {
    workspace_.projects = ProjectList::coloringCustom(id, hex, std::move(workspace_.projects));
    if (save == Save::yes) saveState();
    scheduleChange();
}

void AppStore::moveProject(const Uuid& id, const Uuid& before) {
    workspace_.projects = ProjectList::moving(id, before, std::move(workspace_.projects));
    committed();
}

void AppStore::removeProject(const Uuid& id) {
    if (workspace_.project(id) == nullptr) return;
    for (const auto& session : std::vector(sessions_)) {
        if (session->identity().projectID == id) endSession(session->id());
    }
    workspace_.removeProject(id);
    gitBranches_.erase(id);
    committed();
}

void AppStore::toggleCollapsed(const Uuid& id) {
    workspace_.toggleCollapsed(id);
    committed();
}

Uuid AppStore::workspaceSurface(const Uuid& project) {
    const std::size_t before = workspace_.surfaceTrees.size();
    const Uuid surface = workspace_.workspaceSurface(project);
    if (workspace_.surfaceTrees.size() != before) committed();
    return surface;
}

void AppStore::openSurface(const Uuid& project, SurfaceMeta meta) {
    workspace_.openSurface(project, std::move(meta));
    committed();
}

void AppStore::activateSurface(const Uuid& surface) {
    workspace_.activateSurface(surface);
    committed();
}

void AppStore::closeSurface(const Uuid& surface) {
    const SurfaceMeta* meta = workspace_.surface(surface);
    if (meta == nullptr) return;
    // A chat is its session; the sessions in the panes of a workspace go on without it.
    const auto chat = meta->kind == SurfaceKind::chat && meta->payload ? Uuid::parse(*meta->payload) : std::nullopt;
    if (chat && session(*chat) != nullptr) endSession(*chat);
    workspace_.closeSurface(surface);
    interface_.surfacePendingClose.reset();
    committed();
}

void AppStore::renameSurface(const Uuid& surface, const std::string& title) {
    workspace_.renameSurface(surface, title);
    committed();
}

void AppStore::moveSurface(const Uuid& surface, const Uuid& before) {
    workspace_.moveSurface(surface, before);
    committed();
}

void AppStore::hideFromPane(const Uuid& leaf) {
    workspace_.hideFromPane(leaf);
    committed();
}

void AppStore::focusPane(const Uuid& leaf) {
    workspace_.focusPane(leaf);
    committed();
}

void AppStore::focusPane(int offset) {
    const auto project = workspace_.selectedProjectID;
    if (!project) return;
    const auto active = workspace_.activeSurfaceID.find(*project);
    if (active == workspace_.activeSurfaceID.end()) return;
    workspace_.focusPane(Uuid(active->second), offset);
    committed();
}

std::optional<Uuid> AppStore::splitPane(const Uuid& leaf, PaneAxis axis) {
    const auto newLeaf = workspace_.splitPane(leaf, axis);
    if (newLeaf) committed();
    return newLeaf;
}

void AppStore::closePane(const Uuid& leaf) {
    const auto pane = workspace_.paneOfLeaf(leaf);
    if (!pane) return;
    const auto content = workspace_.surfaceTrees.at(pane->surface).contentID(leaf);
    if (content && session(*content) != nullptr) endSession(*content);
    workspace_.removePane(leaf);
    committed();
}

void AppStore::resizeSplit(const Uuid& surface, const Uuid& split, const std::vector<double>& fractions) {
    workspace_.resizeSplit(surface, split, fractions);
    committed();
}

std::vector<Uuid> AppStore::applyLayout(const PaneNode& layout, const Uuid& surface) {
    auto unplaced = workspace_.applyLayout(layout, surface);
    committed();
    return unplaced;
}

void AppStore::saveTemplate(const std::string& name, const Uuid& surface) {
    workspace_.saveTemplate(name, surface);
    committed();
}

void AppStore::removeTemplate(const Uuid& id) {
    workspace_.removeTemplate(id);
    committed();
}

void AppStore::moveToSurface(const Uuid& session, const Uuid& surface) {
    workspace_.moveToSurface(session, surface, interface_.paneArea);
    committed();
}

void AppStore::swapPanes(const Uuid& leaf, const Uuid& other) {
    workspace_.swapPanes(leaf, other);
    committed();
}

void AppStore::movePane(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const Uuid& surface) {
    workspace_.movePane(content, toLeaf, zone, surface);
    committed();
}

}  // namespace orvane
