#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
#include "OrvaneShell/View/Overlays/HistorySave.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/Overlays/PaneModes.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"
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

void saveLayout(ViewContext& view) {
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.layouts.saveTitle"), "",
                                              [](ViewContext& with, const std::string& name) -> std::string {
                                                  if (PaneLayout::named(name) != nullptr)
                                                      return with.l10n.text("error.layoutNameTaken", name);
                                                  if (name.empty()) return with.l10n.text("error.emptyName");
                                                  if (with.layout.surface)
                                                      with.store.saveTemplate(name, *with.layout.surface);
                                                  return {};
                                              }));
}

ListOverlay::Item layoutItem(std::string label, std::string detail, const PaneNode& shape) {
    return {.label = std::move(label), .detail = std::move(detail), .choose = [shape](ViewContext& with) {
                if (!with.layout.surface) return;
                with.zoomedLeaf.reset();
                const auto unplaced = with.store.applyLayout(shape, *with.layout.surface);
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
    items.reserve(std::size(PaneLayout::all) + view.store.workspace().templates.size() + 1);
    for (const PaneLayout& layout : PaneLayout::all)
        items.push_back(layoutItem(view.l10n.text(layout.textKey), {}, layout.build()));
    for (const PaneTemplate& saved : view.store.workspace().templates)
        items.push_back(layoutItem(saved.name, view.l10n.text("layout.saved"), saved.node));
    items.push_back({.label = view.l10n.text("view.layouts.save"), .choose = saveLayout});
    return items;
}

void splitColumns(ViewContext& view, const KeyEvent& /*key*/) {
    split(view, PaneAxis::horizontal);
}

void splitRows(ViewContext& view, const KeyEvent& /*key*/) {
    split(view, PaneAxis::vertical);
}

void focusBeside(ViewContext& view, const KeyEvent& key) {
    const auto direction = directionOf(key);
    const auto leaf = view.focusedLeaf();
    if (!direction || !leaf) return;
    const ViewLayout whole = view.wholeLayout();
    if (const ViewLayout::Pane* next = whole.neighbour(*leaf, *direction)) view.focus(next->leaf);
}

void focusNext(ViewContext& view, const KeyEvent& /*key*/) {
    focusAway(view, 1);
}

void focusPrevious(ViewContext& view, const KeyEvent& /*key*/) {
    focusAway(view, -1);
}

void zoom(ViewContext& view, const KeyEvent& /*key*/) {
    const auto leaf = view.focusedLeaf();
    view.zoomedLeaf = view.zoomedLeaf == leaf ? std::nullopt : leaf;
}

void resize(ViewContext& view, const KeyEvent& /*key*/) {
    view.zoomedLeaf.reset();
    view.open(std::make_unique<ResizeMode>());
}

void move(ViewContext& view, const KeyEvent& /*key*/) {
    view.zoomedLeaf.reset();
    view.open(std::make_unique<MoveMode>());
}

void layouts(ViewContext& view, const KeyEvent& /*key*/) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.layouts.title"), layoutItems));
}

void history(ViewContext& view, const KeyEvent& key) {
    view.close();
    auto mode = historyMode(view);
    if (mode == nullptr) return;
    if (key.name == KeyName::pageUp) mode->key(view, key);
    view.open(std::move(mode));
}

void search(ViewContext& view, const KeyEvent& /*key*/) {
    view.close();
    auto mode = historyMode(view);
    if (mode == nullptr) return;
    mode->beginSearch(view);
    view.open(std::move(mode));
}

void saveHistory(ViewContext& view, const KeyEvent& /*key*/) {
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->terminal() != nullptr) view.open(HistorySave::prompt(view, *session));
}

void close(ViewContext& view, const KeyEvent& /*key*/) {
    const auto leaf = view.focusedLeaf();
    if (!leaf) return;
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->isActive()) return view.store.requestCloseSession(session->id());
    view.zoomedLeaf.reset();
    view.store.closePane(*leaf);
}

}  // namespace PaneCommands

}  // namespace orvane
