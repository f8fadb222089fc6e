#include "OrvaneCore/Workspace/SurfaceMigration.h"

#include <algorithm>
#include <utility>

namespace orvane::SurfaceMigration {

namespace {

const PaneNode* shownTree(const std::vector<SavedSurface>& strip, const std::optional<Uuid>& active) {
    const PaneNode* first = nullptr;
    for (const SavedSurface& surface : strip) {
        if (!surface.node) continue;
        if (surface.meta.id == active) return &*surface.node;
        if (first == nullptr) first = &*surface.node;
    }
    return first;
}

}  // namespace

std::map<Uuid, std::vector<SavedSurface>> migrate(const std::map<Uuid, PaneNode>& layouts,
                                                  const std::map<Uuid, Uuid>& focused,
                                                  const std::string& defaultTitle) {
    std::map<Uuid, std::vector<SavedSurface>> strips;
    for (const auto& [project, tree] : layouts) {
        const auto focus = focused.find(project);
        SavedSurface workspace{.meta = SurfaceMeta::workspace(defaultTitle), .node = tree, .focusedPane = {}};
        if (focus != focused.end() && tree.contains(focus->second)) workspace.focusedPane = focus->second;
        strips[project].push_back(std::move(workspace));
    }
    return strips;
}

std::optional<Uuid> focusedPane(const std::optional<Uuid>& leaf, const PaneNode& movedFrom, const PaneNode& to) {
    if (!leaf) return std::nullopt;
    const auto before = movedFrom.leafIDs();
    const auto after = to.leafIDs();
    const auto place = std::ranges::find(before, *leaf) - before.begin();
    if (std::cmp_equal(place, before.size()) || std::cmp_greater_equal(place, after.size())) return std::nullopt;
    return after[static_cast<std::size_t>(place)];
}

std::map<Uuid, PaneNode> legacyLayouts(const std::map<Uuid, std::vector<SavedSurface>>& from,
                                       const std::map<Uuid, Uuid>& active) {
    std::map<Uuid, PaneNode> layouts;
    for (const auto& [project, strip] : from) {
        const auto shown = active.find(project);
        const auto id = shown == active.end() ? std::nullopt : std::optional(shown->second);
        if (const PaneNode* tree = shownTree(strip, id)) layouts.emplace(project, *tree);
    }
    return layouts;
}

}  // namespace orvane::SurfaceMigration
