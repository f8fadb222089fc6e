#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/PanePlacement.h"
#include "OrvaneCore/Workspace/WorkspaceModel.h"

namespace orvane {

void WorkspaceModel::placeRestored(const Uuid& session, const Uuid& projectID, const Uuid& leaf, const PaneSize& area) {
    if (project(projectID) == nullptr) return;
    const auto pane = paneOfLeaf(leaf);
    const Uuid surfaceID = pane ? pane->surface : workspaceSurface(projectID);
    PaneNode& tree = surfaceTrees[surfaceID];
    const auto focused = focusedPanes.find(surfaceID);
    const auto focus = focused == focusedPanes.end() ? std::nullopt : std::optional(focused->second);
    const bool isFree = pane && !tree.contentID(leaf);
    tree = isFree ? tree.assigningContent(session, leaf) : PanePlacement::placing(session, tree, focus, area).tree;
    // It may have come into the very pane that waits for the keyboard.
    if (!selectedSessionID && selectedProjectID == projectID) selectFocusedSession();
}

std::optional<WorkspaceModel::Slot> WorkspaceModel::slotOfPane(const Uuid& leaf) const {
    const auto pane = paneOfLeaf(leaf);
    if (!pane) return std::nullopt;
    const auto leaves = surfaceTrees.at(pane->surface).leafIDs();
    const auto place = std::ranges::find(leaves, leaf) - leaves.begin();
    return Slot{.surface = pane->surface, .index = static_cast<std::size_t>(place)};
}

std::optional<Uuid> WorkspaceModel::leafAt(std::size_t index, const std::optional<Uuid>& surfaceID,
                                           const Uuid& projectID) {
    const bool isNamed = surfaceID && projectOfSurface(*surfaceID) == projectID;
    const auto tree = surfaceTrees.find(isNamed ? *surfaceID : workspaceSurface(projectID));
    if (tree == surfaceTrees.end()) return std::nullopt;
    const auto leaves = tree->second.leafIDs();
    return index < leaves.size() ? std::optional(leaves[index]) : std::nullopt;
}

void WorkspaceModel::rebindChats(const Uuid& from, const Uuid& to) {
    for (auto& [projectID, metas] : surfaceMetas) {
        for (SurfaceMeta& meta : metas) {
            if (meta.kind != SurfaceKind::chat || !meta.payload || Uuid::parse(*meta.payload) != from) continue;
            meta.payload = to.upperText();
        }
    }
}

}  // namespace orvane
