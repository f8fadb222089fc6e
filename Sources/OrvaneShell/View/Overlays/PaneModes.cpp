#include "OrvaneShell/View/Overlays/PaneModes.h"

#include "OrvaneShell/View/Commands/ViewCommands.h"

namespace orvane {

namespace {

using Direction = ViewLayout::Direction;

constexpr int colsAtOnce = 2;
constexpr int rowsAtOnce = 1;

/// Moves the divider that belongs to the pane on that axis by one step; `isForward` tells the direction by where the
/// pane and the line are. Whether there was one that could move.
template <typename IsForward>
bool moveDivider(ViewContext& view, const Uuid& leaf, PaneAxis axis, IsForward isForward) {
    const ViewLayout layout = view.wholeLayout();
    const ViewLayout::Pane* pane = layout.pane(leaf);
    const ViewLayout::Divider* divider = layout.dividerOf(leaf, axis);
    if (pane == nullptr || divider == nullptr || !layout.surface) return false;
    const int step = axis == PaneAxis::horizontal ? colsAtOnce : rowsAtOnce;
    const auto shares = layout.movingDivider(*divider, isForward(pane->whole(), divider->line) ? step : -step);
    if (shares) view.store.resizeSplit(*layout.surface, layout.splits[divider->split].id, *shares);
    return shares.has_value();
}

PaneDropZone zoneOf(Direction direction) {
    switch (direction) {
        case Direction::left:
            return PaneDropZone::leading;
        case Direction::right:
            return PaneDropZone::trailing;
        case Direction::up:
            return PaneDropZone::top;
        case Direction::down:
            return PaneDropZone::bottom;
    }
    return PaneDropZone::center;
}

void moveBeside(ViewContext& view, const Uuid& leaf, Direction direction) {
    const ViewLayout layout = view.wholeLayout();
    const ViewLayout::Pane* moved = layout.pane(leaf);
    const ViewLayout::Pane* target = layout.neighbour(leaf, direction);
    if (moved == nullptr || target == nullptr || !moved->content || !layout.surface) return;
    const Uuid content = *moved->content;
    view.store.movePane(content, target->leaf, zoneOf(direction), *layout.surface);
    if (const auto pane = view.store.workspace().paneShowing(content)) view.focus(pane->leaf);
}

ViewOverlay::Next step(ViewContext& view, const KeyEvent& key, void (*act)(ViewContext&, const Uuid&, Direction)) {
    const auto direction = directionOf(key);
    const auto leaf = view.focusedLeaf();
    if (!direction || !leaf) return ViewOverlay::Next::closes;
    act(view, *leaf, *direction);
    return ViewOverlay::Next::stays;
}

}  // namespace

void ResizeMode::pullEdge(ViewContext& view, const Uuid& leaf, ViewLayout::Direction direction) {
    const bool isSideways = direction == Direction::left || direction == Direction::right;
    const bool isForward = direction == Direction::right || direction == Direction::down;
    const bool hasMoved = moveDivider(view, leaf, isSideways ? PaneAxis::horizontal : PaneAxis::vertical,
                                      [&](const CellRect&, const CellRect&) { return isForward; });
    if (!hasMoved) view.say(view.l10n.text("view.pane.edgeStays"));
}

void ResizeMode::grow(ViewContext& view, const Uuid& leaf, Growth growth) {
    bool hasMoved = false;
    for (const PaneAxis axis : {PaneAxis::horizontal, PaneAxis::vertical}) {
        hasMoved |= moveDivider(view, leaf, axis, [&](const CellRect& pane, const CellRect& line) {
            const bool isBehind = axis == PaneAxis::horizontal ? line.x >= pane.right() : line.y >= pane.bottom();
            return isBehind == (growth == Growth::larger);
        });
    }
    if (!hasMoved) view.say(view.l10n.text("view.pane.edgeStays"));
}

ViewOverlay::Next ResizeMode::key(ViewContext& view, const KeyEvent& key) {
    const bool isLarger = key.character == '+' || key.character == '=';
    const auto leaf = view.focusedLeaf();
    if (leaf && (isLarger || key.character == '-')) {
        grow(view, *leaf, isLarger ? Growth::larger : Growth::smaller);
        return Next::stays;
    }
    return step(view, key, pullEdge);
}

std::string ResizeMode::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.resize");
}

ViewOverlay::Next MoveMode::key(ViewContext& view, const KeyEvent& key) {
    return step(view, key, moveBeside);
}

std::string MoveMode::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.move");
}

}  // namespace orvane
