#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/PaneMove.h"
#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "OrvaneCore/Workspace/PanePlacement.h"
#include "OrvaneCore/Workspace/WorkspaceModel.h"

namespace orvane {

namespace {

/// The leaf beside a leaf, in the split that shares its room out when the leaf goes; none for a tree of one leaf.
std::optional<Uuid> neighbour(const PaneNode& node, const Uuid& leaf) {
    const auto* split = std::get_if<PaneNode::Split>(&node.value);
    if (split == nullptr) return std::nullopt;
    const auto& children = split->children;
    for (std::size_t index = 0; index < children.size(); ++index) {
        if (children[index].id() == leaf) {
            return index + 1 < children.size() ? children[index + 1].leafIDs().front()
                                               : children[index - 1].leafIDs().back();
        }
        if (const auto found = neighbour(children[index], leaf)) return found;
    }
    return std::nullopt;
}

}  // namespace

std::optional<WorkspaceModel::Pane> WorkspaceModel::paneOfLeaf(const Uuid& leaf) const {
    for (const auto& [surfaceID, tree] : surfaceTrees) {
        if (tree.contains(leaf)) return Pane{.surface = surfaceID, .leaf = leaf};
    }
    return std::nullopt;
}

std::optional<WorkspaceModel::Pane> WorkspaceModel::paneShowing(const Uuid& content) const {
    std::optional<Pane> found;
    for (const auto& [surfaceID, tree] : surfaceTrees) {
        const auto leaf = tree.leafID(content);
        if (!leaf) continue;
        const bool isActive = std::ranges::any_of(
            activeSurfaceID, [&, id = surfaceID](const auto& active) { return active.second == id; });
        if (isActive || !found) found = Pane{.surface = surfaceID, .leaf = *leaf};
        if (isActive) break;
    }
    return found;
}

std::size_t WorkspaceModel::paneCount() const {
    std::size_t count = 0;
    for (const auto& [surfaceID, tree] : surfaceTrees)
        count += tree.leafIDs().size();
    return count;
}

WorkspaceModel::Pane WorkspaceModel::placeSession(const Uuid& session, const Uuid& projectID,
                                                  const std::optional<Uuid>& targetLeaf, const PaneSize& area) {
    if (project(projectID) == nullptr) return {};
    const auto target = targetLeaf ? paneOfLeaf(*targetLeaf) : std::nullopt;
    const Uuid surfaceID = target ? target->surface : workspaceSurface(projectID);
    PaneNode& tree = surfaceTrees[surfaceID];
    const auto focused = focusedPanes.find(surfaceID);
    const auto focus = focused == focusedPanes.end() ? std::nullopt : std::optional(focused->second);
    auto placement = target ? PanePlacement::placingInLeaf(target->leaf, session, tree, focus, area)
                            : PanePlacement::placing(session, tree, focus, area);
    tree = std::move(placement.tree);
    focusPane(placement.leaf);
    return {.surface = surfaceID, .leaf = placement.leaf};
}

void WorkspaceModel::clearSession(const Uuid& session) {
    for (auto& [surfaceID, tree] : surfaceTrees)
        tree = tree.clearing(session);
    if (selectedSessionID == session) selectFocusedSession();
}

void WorkspaceModel::focusPane(const Uuid& leaf) {
    const auto pane = paneOfLeaf(leaf);
    if (!pane) return;
    focusedPanes[pane->surface] = leaf;
    const auto owner = projectOfSurface(pane->surface);
    if (!owner) return;
    activeSurfaceID[*owner] = pane->surface;
    selectedProjectID = owner;
    selectFocusedSession();
}

void WorkspaceModel::focusPane(const Uuid& surfaceID, int offset) {
    const auto tree = surfaceTrees.find(surfaceID);
    if (tree == surfaceTrees.end()) return;
    const auto leaves = tree->second.leafIDs();
    const auto focused = std::ranges::find(leaves, focusedPanes[surfaceID]);
    const int current = focused == leaves.end() ? 0 : static_cast<int>(focused - leaves.begin());
    const int next = PaneNavigation::neighbourIndex(current, static_cast<int>(leaves.size()), offset);
    focusPane(leaves[static_cast<std::size_t>(next)]);
}

std::optional<Uuid> WorkspaceModel::splitPane(const Uuid& leaf, PaneAxis axis) {
    const auto pane = paneOfLeaf(leaf);
    if (!pane) return std::nullopt;
    const Uuid newLeaf = Uuid::random();
    PaneNode& tree = surfaceTrees[pane->surface];
    tree = tree.splitting(leaf, axis, newLeaf);
    focusPane(newLeaf);
    return newLeaf;
}

void WorkspaceModel::removePane(const Uuid& leaf) {
    const auto pane = paneOfLeaf(leaf);
    if (!pane) return;
    PaneNode& tree = surfaceTrees[pane->surface];
    const auto heir = neighbour(tree, leaf);
    tree = tree.removing(leaf).value_or(PaneNode::single());
    if (focusedPanes[pane->surface] != leaf) return;
    focusedPanes[pane->surface] = heir.value_or(tree.leafIDs().front());
    selectFocusedSession();
}

void WorkspaceModel::resizeSplit(const Uuid& surfaceID, const Uuid& split, const std::vector<double>& fractions) {
    const auto tree = surfaceTrees.find(surfaceID);
    if (tree != surfaceTrees.end()) tree->second = tree->second.updatingFractions(split, fractions);
}

/// Installs a tree whose leaves may be others than before; the focus goes to the content that had it.
void WorkspaceModel::replaceTree(const Uuid& surfaceID, PaneNode tree) {
    const auto focusedContent = surfaceTrees[surfaceID].contentID(focusedPanes[surfaceID]);
    const auto leaf = focusedContent ? tree.leafID(*focusedContent) : std::nullopt;
    if (leaf) {
        focusedPanes[surfaceID] = *leaf;
    } else if (!tree.contains(focusedPanes[surfaceID])) {
        focusedPanes[surfaceID] = tree.leafIDs().front();
    }
    surfaceTrees[surfaceID] = std::move(tree);
    selectFocusedSession();
}

std::vector<Uuid> WorkspaceModel::applyLayout(const PaneNode& layout, const Uuid& surfaceID) {
    const auto tree = surfaceTrees.find(surfaceID);
    if (tree == surfaceTrees.end()) return {};
    auto applied = PaneLayout::applying(layout, tree->second);
    replaceTree(surfaceID, std::move(applied.tree));
    return applied.unplaced;
}

void WorkspaceModel::moveToSurface(const Uuid& session, const Uuid& surfaceID, const PaneSize& area) {
    const auto tree = surfaceTrees.find(surfaceID);
    const auto from = paneShowing(session);
    if (tree == surfaceTrees.end() || !from || from->surface == surfaceID) return;
    if (projectOfSurface(from->surface) != projectOfSurface(surfaceID)) return;
    removePane(from->leaf);
    const auto focused = focusedPanes.find(surfaceID);
    const auto focus = focused == focusedPanes.end() ? std::nullopt : std::optional(focused->second);
    auto placement = PanePlacement::placing(session, tree->second, focus, area);
    tree->second = std::move(placement.tree);
    focusPane(placement.leaf);
    // Nobody wants the tab that it leaves empty.
    if (surfaceTrees[from->surface].contentIDs().empty()) closeSurface(from->surface);
}

void WorkspaceModel::swapPanes(const Uuid& leaf, const Uuid& other) {
    const auto pane = paneOfLeaf(leaf);
    if (!pane || leaf == other || !surfaceTrees[pane->surface].contains(other)) return;
    const PaneNode& tree = surfaceTrees[pane->surface];
    const bool hadFocus = focusedPanes[pane->surface] == leaf;
    const auto content = tree.contentID(leaf);
    surfaceTrees[pane->surface] = tree.assigningContent(tree.contentID(other), leaf).assigningContent(content, other);
    if (hadFocus) focusPane(other);
}

void WorkspaceModel::removeTemplate(const Uuid& id) {
    std::erase_if(templates, [&](const PaneTemplate& each) { return each.id == id; });
}

void WorkspaceModel::saveTemplate(const std::string& name, const Uuid& surfaceID) {
    const auto tree = surfaceTrees.find(surfaceID);
    if (tree == surfaceTrees.end()) return;
    std::erase_if(templates, [&](const PaneTemplate& each) { return each.name == name; });
    templates.push_back({.id = Uuid::random(), .name = name, .node = tree->second.template_()});
}

void WorkspaceModel::movePane(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const Uuid& surfaceID) {
    const auto tree = surfaceTrees.find(surfaceID);
    if (tree == surfaceTrees.end()) return;
    const SurfaceMeta* tab = surface(content);
    if (tab != nullptr && (!isPaneEmbeddable(tab->kind) || projectOfSurface(content) != projectOfSurface(surfaceID)))
        return;
    PaneNode moved = PaneMove::moving(content, toLeaf, zone, tree->second);
    const auto leaf = moved.leafID(content);
    replaceTree(surfaceID, std::move(moved));
    if (leaf) focusPane(*leaf);
}

}  // namespace orvane
