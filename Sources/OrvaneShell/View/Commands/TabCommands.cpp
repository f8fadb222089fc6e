#include <algorithm>
#include <iterator>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/SurfaceList.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/ConfirmOverlay.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"

namespace orvane::TabCommands {

namespace {

void show(ViewContext& view, const std::optional<Uuid>& surface) {
    if (!surface) return;
    view.zoomedLeaf.reset();
    view.store.activateSurface(*surface);
    if (SessionController* session = view.focusedSession()) session->clearAttention();
}

std::vector<SurfaceMeta> strip(const ViewContext& view) {
    const auto project = view.project();
    return project ? view.store.workspace().visibleSurfaces(*project) : std::vector<SurfaceMeta>();
}

void walk(ViewContext& view, int offset) {
    if (const auto shown = view.surface()) show(view, SurfaceList::neighbour(*shown, strip(view), offset));
}

}  // namespace

std::string titleOf(const ViewContext& view, const SurfaceMeta& meta) {
    return Text::oneLine(SurfaceTabs::title(meta.title, meta.payload, view.l10n.text("shell.tab.workspace")));
}

std::vector<ListOverlay::Item> tabItems(const ViewContext& view) {
    std::vector<ListOverlay::Item> items;
    for (const Project& project : view.store.workspace().projects) {
        for (const SurfaceMeta& meta : view.store.workspace().visibleSurfaces(project.id)) {
            items.push_back({.label = titleOf(view, meta),
                             .detail = project.name,
                             .choose = [project = project.id, surface = meta.id](ViewContext& with) {
                                 if (with.project() != project) with.store.selectProject(project);
                                 show(with, surface);
                             }});
        }
    }
    return items;
}

void open(ViewContext& view) {
    const auto project = view.project();
    if (!project) return;
    view.zoomedLeaf.reset();
    view.store.openSurface(*project, SurfaceMeta::workspace(view.l10n.text("shell.tab.workspace")));
    view.launch({.kind = SessionKind::shell});
}

void next(ViewContext& view) {
    walk(view, 1);
}

void previous(ViewContext& view) {
    walk(view, -1);
}

void selectAt(ViewContext& view, int number) {
    show(view, SurfaceList::at(number, strip(view)));
}

void moveLeft(ViewContext& view) {
    const auto tabs = strip(view);
    const auto at = std::ranges::find(tabs, view.surface(), &SurfaceMeta::id);
    if (at != tabs.end() && at != tabs.begin()) view.store.moveSurface(at->id, std::prev(at)->id);
}

void moveRight(ViewContext& view) {
    const auto tabs = strip(view);
    const auto at = std::ranges::find(tabs, view.surface(), &SurfaceMeta::id);
    if (at != tabs.end() && std::next(at) != tabs.end()) view.store.moveSurface(std::next(at)->id, at->id);
}

void rename(ViewContext& view) {
    const auto surface = view.surface();
    const SurfaceMeta* meta = surface ? view.store.workspace().surface(*surface) : nullptr;
    if (meta == nullptr) return;
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.rename.tab"), meta->title,
                                              [id = meta->id](ViewContext& with, const std::string& title) {
                                                  with.store.renameSurface(id, title);
                                                  return std::string();
                                              }));
}

void close(ViewContext& view) {
    const auto surface = view.surface();
    if (!surface) return;
    view.open(std::make_unique<ConfirmOverlay>(ConfirmOverlay::Question{
        .title = view.l10n.text("shell.tab.closeConfirmTitle"),
        .body = view.l10n.text("shell.tab.closeConfirmBody"),
        .confirm = view.l10n.text("view.tab.close"),
        .onConfirm = [id = *surface](ViewContext& with) { with.store.closeSurface(id); },
        .isMeant = [id = *surface](ViewContext& with) { return with.store.workspace().surface(id) != nullptr; }}));
}

void showHidden(ViewContext& view) {
    if (view.wholeLayout().hiddenTabs.empty()) return view.say(view.l10n.text("view.tab.noneHidden"));
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("shell.tab.overflow"), [](const ViewContext& with) {
        std::vector<ListOverlay::Item> items;
        const ViewLayout layout = with.wholeLayout();
        items.reserve(layout.hiddenTabs.size());
        for (const SurfaceMeta& meta : layout.hiddenTabs) {
            items.push_back(
                {.label = titleOf(with, meta), .choose = [id = meta.id](ViewContext& then) { show(then, id); }});
        }
        return items;
    }));
}

}  // namespace orvane::TabCommands
