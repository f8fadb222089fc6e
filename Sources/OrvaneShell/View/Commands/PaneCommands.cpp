#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneMetrics.h"
#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
#include "OrvaneShell/View/Overlays/HistorySave.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/Overlays/PaneModes.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"
#include "OrvaneShell/View/PaneLinks.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

std::optional<ViewLayout::Direction> directionOf(const KeyEvent& key) {
    using Direction = ViewLayout::Direction;
    const auto is = [&](KeyName name, char32_t letter) {
        return key.name == name || (key.name == KeyName::character && key.character == letter);
    };
    if (is(KeyName::left, 'h')) return Direction::left;
    if (is(KeyName::right, 'l')) return Direction::right;
    if (is(KeyName::up, 'k')) return Direction::up;
    if (is(KeyName::down, 'j')) return Direction::down;
    return std::nullopt;
}

namespace PaneCommands {

namespace {

/// The new half shows a shell of the same folder: an empty pane would only ask what is wanted.
void split(ViewContext& view, PaneAxis axis) {
    const auto leaf = view.focusedLeaf();
    if (!leaf) return;
    view.zoomedLeaf.reset();
    const SessionController* beside = view.focusedSession();
    const auto folder = beside != nullptr ? std::optional(beside->identity().projectPath) : std::nullopt;
    const auto half = view.store.splitPane(*leaf, axis);
    if (half) view.launch({.kind = SessionKind::shell, .workingDirectory = folder, .targetLeaf = half});
}

void focusAway(ViewContext& view, int offset) {
    view.zoomedLeaf.reset();
    view.store.focusPane(offset);
    if (SessionController* session = view.focusedSession()) session->clearAttention();
}

/// The panes that follow each other, round the ends.
void swapWith(ViewContext& view, int offset) {
    const auto leaf = view.focusedLeaf();
    const auto pane = leaf ? view.store.workspace().paneOfLeaf(*leaf) : std::nullopt;
    if (!pane) return;
    view.zoomedLeaf.reset();
    const auto leaves = view.store.workspace().surfaceTrees.at(pane->surface).leafIDs();
    const auto at = std::ranges::find(leaves, *leaf) - leaves.begin();
    const int other = PaneNavigation::neighbourIndex(static_cast<int>(at), static_cast<int>(leaves.size()), offset);
    view.store.swapPanes(*leaf, leaves[static_cast<std::size_t>(other)]);
}

void saveLayout(ViewContext& view) {
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.layouts.saveTitle"), "",
                                              [](ViewContext& with, const std::string& name) -> std::string {
                                                  if (PaneLayout::named(name) != nullptr)
                                                      return with.l10n.text("error.layoutNameTaken", name);
                                                  if (name.empty()) return with.l10n.text("error.emptyName");
                                                  if (const auto shown = with.surface())
                                                      with.store.saveTemplate(name, *shown);
                                                  return {};
                                              }));
}

/// Shows what the focused pane shows in another tab.
void sendTo(ViewContext& view, const Uuid& surface) {
    const auto leaf = view.focusedLeaf();
    const auto pane = leaf ? view.store.workspace().paneOfLeaf(*leaf) : std::nullopt;
    const SessionController* session = view.focusedSession();
    if (!pane || session == nullptr) return;
    view.zoomedLeaf.reset();
    view.store.moveToSurface(session->id(), surface);
}

void deleteLayout(ViewContext& view) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.layouts.deleteTitle"), [](const auto& with) {
        std::vector<ListOverlay::Item> items;
        for (const PaneTemplate& saved : with.store.workspace().templates)
            items.push_back({.label = saved.name,
                             .choose = [id = saved.id](ViewContext& then) { then.store.removeTemplate(id); },
                             .staysOpen = true});
        return items;
    }));
}

ListOverlay::Item layoutItem(std::string label, std::string detail, const PaneNode& shape) {
    return {.label = std::move(label), .detail = std::move(detail), .choose = [shape](ViewContext& with) {
                const auto shown = with.surface();
                if (!shown) return;
                with.zoomedLeaf.reset();
                const auto unplaced = with.store.applyLayout(shape, *shown);
                if (!unplaced.empty()) {
                    with.say(with.l10n.plural("layout.unplaced", static_cast<long long>(unplaced.size())));
                }
            }};
}

/// On the focused pane; null when that has no terminal.
std::unique_ptr<HistoryMode> historyMode(ViewContext& view) {
    view.unsay(view.notice());
    const SessionController* session = view.focusedSession();
    if (session == nullptr || session->terminal() == nullptr) return nullptr;
    return std::make_unique<HistoryMode>(session->id(), session->terminal()->terminal);
}

}  // namespace

std::vector<ListOverlay::Item> layoutItems(const ViewContext& view) {
    std::vector<ListOverlay::Item> items;
    items.reserve(std::size(PaneLayout::all) + view.store.workspace().templates.size() + 2);
    for (const PaneLayout& layout : PaneLayout::all)
        items.push_back(layoutItem(view.l10n.text(layout.textKey), {}, layout.build()));
    for (const PaneTemplate& saved : view.store.workspace().templates)
        items.push_back(layoutItem(saved.name, view.l10n.text("layout.saved"), saved.node));
    items.push_back({.label = view.l10n.text("view.layouts.save"), .choose = saveLayout});
    if (!view.store.workspace().templates.empty())
        items.push_back({.label = view.l10n.text("view.layouts.delete"), .choose = deleteLayout});
    return items;
}

void splitColumns(ViewContext& view) {
    split(view, PaneAxis::horizontal);
}

void splitRows(ViewContext& view) {
    split(view, PaneAxis::vertical);
}

void open(ViewContext& view) {
    const auto leaf = view.focusedLeaf();
    const ViewLayout whole = view.wholeLayout();
    const ViewLayout::Pane* pane = leaf ? whole.pane(*leaf) : nullptr;
    if (pane == nullptr) return;
    const PaneSize size{pane->body.cols * CellPoints::width, pane->body.rows * CellPoints::height};
    // Where neither half would be comfortable, the longer side is halved.
    const PaneAxis longer = size.width >= size.height ? PaneAxis::horizontal : PaneAxis::vertical;
    split(view, PaneMetrics::splitAxis(size).value_or(longer));
}

void focus(ViewContext& view, ViewLayout::Direction direction) {
    const auto leaf = view.focusedLeaf();
    if (!leaf) return;
    const ViewLayout whole = view.wholeLayout();
    if (const ViewLayout::Pane* next = whole.neighbour(*leaf, direction)) view.focus(next->leaf);
}

void pull(ViewContext& view, ViewLayout::Direction direction) {
    view.zoomedLeaf.reset();
    if (const auto leaf = view.focusedLeaf()) ResizeMode::pullEdge(view, *leaf, direction);
}

void grow(ViewContext& view) {
    view.zoomedLeaf.reset();
    if (const auto leaf = view.focusedLeaf()) ResizeMode::grow(view, *leaf, ResizeMode::Growth::larger);
}

void shrink(ViewContext& view) {
    view.zoomedLeaf.reset();
    if (const auto leaf = view.focusedLeaf()) ResizeMode::grow(view, *leaf, ResizeMode::Growth::smaller);
}

void swapNext(ViewContext& view) {
    swapWith(view, 1);
}

void swapPrevious(ViewContext& view) {
    swapWith(view, -1);
}

void focusNext(ViewContext& view) {
    focusAway(view, 1);
}

void focusPrevious(ViewContext& view) {
    focusAway(view, -1);
}

void zoom(ViewContext& view) {
    const auto leaf = view.focusedLeaf();
    view.zoomedLeaf = view.zoomedLeaf == leaf ? std::nullopt : leaf;
}

void resize(ViewContext& view) {
    view.zoomedLeaf.reset();
    view.open(std::make_unique<ResizeMode>());
}

void move(ViewContext& view) {
    view.zoomedLeaf.reset();
    view.open(std::make_unique<MoveMode>());
}

void breakOut(ViewContext& view) {
    const auto project = view.project();
    const auto leaf = view.focusedLeaf();
    const SessionController* session = view.focusedSession();
    if (!project || !leaf || session == nullptr) return;
    if (view.wholeLayout().panes.size() < 2) return view.say(view.l10n.text("view.pane.alone"));
    const SurfaceMeta meta = SurfaceMeta::workspace(view.l10n.text("shell.tab.workspace"));
    const Uuid moved = session->id();
    view.zoomedLeaf.reset();
    view.store.openSurface(*project, meta);
    view.store.moveToSurface(moved, meta.id);
}

void sendToTab(ViewContext& view) {
    if (view.focusedSession() == nullptr) return;
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.sendToTab.title"), [](const auto& with) {
        std::vector<ListOverlay::Item> items;
        const auto project = with.project();
        for (const SurfaceMeta& meta :
             project ? with.store.workspace().visibleSurfaces(*project) : std::vector<SurfaceMeta>()) {
            const bool isWorkspace = with.store.workspace().surfaceTrees.contains(meta.id);
            if (!isWorkspace || with.surface() == meta.id) continue;
            items.push_back({.label = TabCommands::titleOf(with, meta),
                             .choose = [id = meta.id](ViewContext& then) { sendTo(then, id); }});
        }
        items.push_back({.label = with.l10n.text("view.sendToTab.new"), .choose = breakOut});
        return items;
    }));
}

void layouts(ViewContext& view) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.layouts.title"), layoutItems));
}

void history(ViewContext& view) {
    view.close();
    if (auto mode = historyMode(view)) view.open(std::move(mode));
}

void historyPage(ViewContext& view) {
    history(view);
    if (view.overlay != nullptr) view.overlay->key(view, {.name = KeyName::pageUp});
}

void search(ViewContext& view) {
    view.close();
    auto mode = historyMode(view);
    if (mode == nullptr) return;
    mode->beginSearch(view);
    view.open(std::move(mode));
}

void saveHistory(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->terminal() != nullptr) view.open(HistorySave::prompt(view, *session));
}

void links(ViewContext& view) {
    const auto leaf = view.focusedLeaf();
    const ViewLayout::Pane* pane = leaf ? view.layout.pane(*leaf) : nullptr;
    std::vector<std::string> addresses;
    if (pane != nullptr) {
        for (const LinkMatch& link : PaneLinks::shown(view, *pane))
            addresses.push_back(link.text);
    }
    if (addresses.empty()) return view.say(view.l10n.text("view.link.none"));
    // The one that was written last is the one that is wanted most often.
    std::ranges::reverse(addresses);
    const auto items = [addresses](const ViewContext&) {
        std::vector<ListOverlay::Item> list;
        list.reserve(addresses.size());
        for (const std::string& address : addresses)
            list.push_back({.label = Text::oneLine(address),
                            .choose = [address](ViewContext& with) { PaneLinks::open(with, address); }});
        return list;
    };
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.link.title"), items));
}

void close(ViewContext& view) {
    const auto leaf = view.focusedLeaf();
    if (!leaf) return;
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->isActive()) return view.store.requestCloseSession(session->id());
    view.zoomedLeaf.reset();
    view.store.closePane(*leaf);
}

}  // namespace PaneCommands

}  // namespace orvane
