
#include <algorithm>

#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"

namespace orvane::ProjectCommands {

namespace {

void walk(ViewContext& view, int offset) {
    const auto& projects = view.store.workspace().projects;
    const auto shown = view.project();
    if (projects.empty() || !shown) return;
    const auto at = std::ranges::find(projects, *shown, &Project::id) - projects.begin();
    const int next = PaneNavigation::neighbourIndex(static_cast<int>(at), static_cast<int>(projects.size()), offset);
    view.zoomedLeaf.reset();
    view.store.selectProject(projects[static_cast<std::size_t>(next)].id);
}

}  // namespace

void next(ViewContext& view) {
    walk(view, 1);
}

void previous(ViewContext& view) {
    walk(view, -1);
}

void open(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    std::string folder = session != nullptr ? session->identity().projectPath : std::string("~/");
    if (!folder.ends_with('/')) folder += '/';
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.openProject"), folder,
                                              [](ViewContext& with, const std::string& typed) {
                                                  with.actions.openProject(typed);
                                                  return std::string();
                                              }));
}

void rename(ViewContext& view) {
    const auto shown = view.project();
    const Project* project = shown ? view.store.workspace().project(*shown) : nullptr;
    if (project == nullptr) return;
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.rename.project"), project->name,
                                              [id = project->id](ViewContext& with, const std::string& name) {
                                                  with.store.renameProject(id, name);
                                                  return std::string();
                                              }));
}

void fold(ViewContext& view) {
    if (const auto shown = view.project()) view.store.toggleCollapsed(*shown);
}

}  // namespace orvane::ProjectCommands
