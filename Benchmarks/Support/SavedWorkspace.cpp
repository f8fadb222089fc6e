#include "Support/SavedWorkspace.h"

#include <fmt/format.h>

#include "OrvaneCore/Workspace/SavedState.h"
#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"

namespace orvane::benchmark {

namespace {

/// Splits the newest pane each time, in turn beside and below, as people do.
PaneNode treeOf(std::size_t panes) {
    PaneNode tree = PaneNode::single();
    for (std::size_t count = 1; count < panes; ++count) {
        tree = tree.splitting(tree.leafIDs().back(), count % 2 == 1 ? PaneAxis::horizontal : PaneAxis::vertical);
    }
    return tree;
}

SavedState stateOf(const SavedWorkspace& size) {
    SavedState state{.surfaces = std::map<Uuid, std::vector<SavedSurface>>()};
    for (std::size_t number = 1; number <= size.projects; ++number) {
        const Project project{.id = Uuid::random(),
                              .name = fmt::format("project-{}", number),
                              .path = fmt::format("/home/someone/work/project-{}", number)};
        auto& strip = (*state.surfaces)[project.id];
        for (std::size_t tab = 1; tab <= size.tabsPerProject; ++tab) {
            const PaneNode tree = treeOf(size.panesPerTab);
            strip.push_back({.meta = SurfaceMeta::workspace(fmt::format("Workspace {}", tab)),
                             .node = tree,
                             .focusedPane = tree.leafIDs().back()});
        }
        state.activeSurfaces[project.id] = strip.back().meta.id;
        state.selectedProjectID = project.id;
        state.projects.push_back(project);
    }
    return state;
}

}  // namespace

Measured<void> SavedWorkspace::write(const Environment& environment) const {
    if (auto made = createFolders(Folders::applicationSupport(environment)); !made) {
        return Failure(made.error().message());
    }
    const std::string text = Json::write(stateOf(*this).encode(), Json::Layout::indented);
    if (auto written = writeWholeFile(HostPaths::state(environment), text); !written) {
        return Failure(written.error().message());
    }
    return {};
}

}  // namespace orvane::benchmark
