#include "OrvaneShell/View/PaneDrag.h"

#include <algorithm>
#include <cmath>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

PaneSize sizeOf(const CellRect& rect) {
    return {.width = rect.cols * CellPoints::width, .height = rect.rows * CellPoints::height};
}

/// The middle of a cell.
PanePoint pointIn(const CellRect& rect, int x, int y) {
    return {.x = (x - rect.x + 0.5) * CellPoints::width, .y = (y - rect.y + 0.5) * CellPoints::height};
}

CellRect cellsOf(const PaneRect& part, const CellRect& rect) {
    const auto cells = [](double points, double cell) { return static_cast<int>(std::lround(points / cell)); };
    const int left = cells(part.x, CellPoints::width);
    const int top = cells(part.y, CellPoints::height);
    return {.x = rect.x + left,
            .y = rect.y + top,
            .cols = std::min(cells(part.width, CellPoints::width), rect.cols - left),
            .rows = std::min(cells(part.height, CellPoints::height), rect.rows - top)};
}

}  // namespace

void PaneDrag::moveTo(const ViewContext& view, int x, int y) {
    target = {};
    preview = {};
    const ViewLayout& layout = view.layout;
    if (layout.tabStrip.contains(x, y)) {
        const ViewLayout::Tab* tab = layout.tabAt(x, y);
        if (tab != nullptr &&
            (tab->surface == layout.surface || !view.store.workspace().surfaceTrees.contains(tab->surface)))
            return;
        target = tab == nullptr ? Target(OnStrip{}) : Target(OnTab{tab->surface});
        preview = tab == nullptr ? layout.tabStrip : tab->rect;
        return;
    }
    const ViewLayout::Pane* under = layout.paneAt(x, y);
    if (under == nullptr || under->leaf == leaf) return;
    const CellRect rect = under->whole();
    const PaneDropZone zone = resolvePaneDropZone(pointIn(rect, x, y), sizeOf(rect));
    target = OnPane{under->leaf, zone};
    preview = cellsOf(previewRect(zone, sizeOf(rect)), rect);
}

void PaneDrag::drop(ViewContext& view) const {
    std::visit(Overloaded{[](const std::monostate&) {},
                          [&](const OnPane& on) {
                              const ViewLayout::Pane* pane = view.layout.pane(on.leaf);
                              const bool replaces = on.zone == PaneDropZone::center && pane != nullptr && pane->content;
                              if (!view.layout.surface) return;
                              view.store.movePane(content, on.leaf, on.zone, *view.layout.surface);
                              if (replaces) view.say(view.l10n.plural("layout.unplaced", 1));
                          },
                          [&](const OnTab& on) { view.store.moveToSurface(content, on.surface); },
                          [&](const OnStrip&) {
                              view.focus(leaf);
                              PaneCommands::breakOut(view);
                          }},
               target);
}

}  // namespace orvane
