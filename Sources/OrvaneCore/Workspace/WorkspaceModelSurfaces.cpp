#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/WorkspaceModel.h"

namespace orvane {

std::optional<Uuid> WorkspaceModel::projectOfSurface(const Uuid& id) const {
    for (const auto& [projectID, metas] : surfaceMetas) {
        if (std::ranges::find(metas, id, &SurfaceMeta::id) != metas.end()) return projectID;
    }
    return std::nullopt;
}

const SurfaceMeta* WorkspaceModel::surface(const Uuid& id) const {
    for (const auto& [projectID, metas] : surfaceMetas) {
        const auto found = std::ranges::find(metas, id, &SurfaceMeta::id);
        if (found != metas.end()) return &*found;
    }
    return nullptr;
}

std::vector<SurfaceMeta>* WorkspaceModel::strip(const Uuid& id) {
    const auto owner = projectOfSurface(id);
    return owner ? &surfaceMetas[*owner] : nullptr;
}

Uuid WorkspaceModel::workspaceSurface(const Uuid& projectID) {
    if (project(projectID) == nullptr) return {};
    const auto isWorkspace = [](const SurfaceMeta& meta) { return meta.kind == SurfaceKind::terminal; };
    if (const auto active = activeSurfaceID.find(projectID); active != activeSurfaceID.end()) {
        const SurfaceMeta* shown = surface(active->second);
        if (shown != nullptr && isWorkspace(*shown)) return shown->id;
    }
    const auto& metas = surfaceMetas[projectID];
    const auto first = std::ranges::find_if(metas, isWorkspace);
    if (first != metas.end()) return first->id;
    auto fresh = SavedSurface::workspace(workspaceTitle);
    const Uuid id = fresh.meta.id;
    install(projectID, std::move(fresh));
    activeSurfaceID.try_emplace(projectID, id);
    return id;
}

void WorkspaceModel::install(const Uuid& projectID, SavedSurface saved) {
    const Uuid id = saved.meta.id;
    surfaceMetas[projectID].push_back(std::move(saved.meta));
    if (!saved.node) return;
    focusedPanes[id] = saved.focusedPane.value_or(saved.node->leafIDs().front());
    surfaceTrees[id] = std::move(*saved.node);
}

void WorkspaceModel::openSurface(const Uuid& projectID, SurfaceMeta meta) {
    if (project(projectID) == nullptr) return;
    const Uuid id = meta.id;
    auto& metas = surfaceMetas[projectID];
    const auto preview = meta.isPreview ? std::ranges::find(metas, true, &SurfaceMeta::isPreview) : metas.end();
    if (preview != metas.end()) dropSurface(preview->id);
    if (ownsPaneTree(meta.kind)) {
        surfaceTrees[id] = PaneNode::single();
        focusedPanes[id] = surfaceTrees[id].leafIDs().front();
    }
    if (const auto pane = isPaneEmbeddable(meta.kind) ? emptyPane(projectID) : std::nullopt) {
        PaneNode& tree = surfaceTrees[pane->surface];
        tree = tree.assigningContent(id, pane->leaf);
    }
    metas = SurfaceList::replacingPreview(std::move(meta), std::move(metas)).metas;
    activateSurface(id);
}

/// An empty pane of the workspace that the project shows.
std::optional<WorkspaceModel::Pane> WorkspaceModel::emptyPane(const Uuid& projectID) const {
    const auto active = activeSurfaceID.find(projectID);
    const SurfaceMeta* shown = active == activeSurfaceID.end() ? nullptr : surface(active->second);
    if (shown == nullptr || shown->kind != SurfaceKind::terminal) return std::nullopt;
    const auto leaf = surfaceTrees.at(shown->id).firstEmptyLeafID();
    return leaf ? std::optional(Pane{.surface = shown->id, .leaf = *leaf}) : std::nullopt;
}

void WorkspaceModel::activateSurface(const Uuid& id) {
    const auto owner = projectOfSurface(id);
    if (!owner) return;
    const auto pane = paneShowing(id);
    if (pane) focusedPanes[pane->surface] = pane->leaf;
    activeSurfaceID[*owner] = pane ? pane->surface : id;
    if (selectedProjectID == owner) selectFocusedSession();
}

void WorkspaceModel::closeSurface(const Uuid& id) {
    const auto owner = projectOfSurface(id);
    if (!owner) return;
    // First, so that what its panes showed is in the strip again and may take its place.
    dropSurface(id);
    const Uuid active = activeSurfaceID[*owner];
    const auto next = SurfaceList::closing(id, visibleSurfaces(*owner), active).active;
    std::erase_if(surfaceMetas[*owner], [&](const SurfaceMeta& meta) { return meta.id == id; });
    activeSurfaceID.erase(*owner);
    if (next) activeSurfaceID[*owner] = *next;
    workspaceSurface(*owner);
    if (selectedProjectID == owner && next != active) selectFocusedSession();
}

/// Forgets what hangs on a surface: its tree and its place in the trees of others.
void WorkspaceModel::dropSurface(const Uuid& id) {
    surfaceTrees.erase(id);
    focusedPanes.erase(id);
    for (auto& [surfaceID, tree] : surfaceTrees)
        tree = tree.clearing(id);
}

void WorkspaceModel::renameSurface(const Uuid& id, const std::string& title) {
    auto* metas = strip(id);
    if (metas == nullptr) return;
    auto& meta = *std::ranges::find(*metas, id, &SurfaceMeta::id);
    meta = meta.renamed(title);
}

void WorkspaceModel::moveSurface(const Uuid& id, const Uuid& before) {
    if (auto* metas = strip(id)) *metas = SurfaceList::moving(id, before, std::move(*metas));
}

bool WorkspaceModel::titleChatSurface(const Uuid& session, const std::string& title) {
    for (auto& [projectID, metas] : surfaceMetas) {
        for (SurfaceMeta& meta : metas) {
            if (meta.kind != SurfaceKind::chat || !meta.isAutoTitle || !meta.payload) continue;
            if (Uuid::parse(*meta.payload) != session || meta.title == title || title.empty()) continue;
            meta.title = title;
            return true;
        }
    }
    return false;
}

void WorkspaceModel::recordChatTranscript(const Uuid& session, const ChatHistorySegment& segment) {
    for (auto& [projectID, metas] : surfaceMetas) {
        for (SurfaceMeta& meta : metas) {
            const bool isBound =
                meta.kind == SurfaceKind::chat && meta.payload && Uuid::parse(*meta.payload) == session;
            if (isBound) meta = meta.appendingHistory(segment);
        }
    }
}

void WorkspaceModel::pruneWorktrees(const std::function<bool(const std::string& path)>& isFolder) {
    for (auto& [projectID, metas] : surfaceMetas) {
        for (SurfaceMeta& meta : metas) {
            if (!meta.worktreePath || isFolder(*meta.worktreePath)) continue;
            meta.worktreePath.reset();
            meta.worktreeBranch.reset();
        }
    }
}

std::vector<SurfaceMeta> WorkspaceModel::visibleSurfaces(const Uuid& projectID) const {
    const auto found = surfaceMetas.find(projectID);
    if (found == surfaceMetas.end()) return {};
    std::set<Uuid> embedded;
    for (const SurfaceMeta& meta : found->second) {
        const auto tree = surfaceTrees.find(meta.id);
        if (tree == surfaceTrees.end()) continue;
        for (const Uuid& content : tree->second.contentIDs())
            embedded.insert(content);
    }
    std::vector<SurfaceMeta> visible;
    std::ranges::copy_if(found->second, std::back_inserter(visible),
                         [&](const SurfaceMeta& meta) { return !embedded.contains(meta.id); });
    return visible;
}

void WorkspaceModel::hideFromPane(const Uuid& leaf) {
    const auto pane = paneOfLeaf(leaf);
    if (!pane) return;
    PaneNode& tree = surfaceTrees[pane->surface];
    const auto content = tree.contentID(leaf);
    if (content && surface(*content) != nullptr) tree = tree.assigningContent(std::nullopt, leaf);
}

}  // namespace orvane
