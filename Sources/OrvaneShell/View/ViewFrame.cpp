#include "OrvaneShell/View/ViewFrame.h"

#include <utility>

#include "OrvaneShell/View/Painting/FramePainter.h"

namespace orvane {

void ViewFrame::paint(ViewContext& view, Canvas& canvas) {
    const bool isResized = view.cols != canvas.cols() || view.rows != canvas.rows();
    const bool isCovered = view.overlay != nullptr || view.drag;
    const bool isWhole = std::exchange(isStale_, false) || isResized || isCovered;
    if (isWhole) place(view, canvas);
    panes_.paint(view, canvas, isWhole ? PanePainter::Part::whole : PanePainter::Part::contents);
    if (form_ == Form::plain) return;
    if (isWhole) paintSurroundings(view, canvas);
    paintOnTop(view, canvas);
}

void ViewFrame::place(ViewContext& view, const Canvas& canvas) const {
    const bool isDrawn = form_ == Form::drawn;
    view.cols = canvas.cols();
    view.rows = canvas.rows();
    view.layout =
        ViewLayout::of(view.store.workspace(), {.cols = view.cols,
                                                .rows = view.rows,
                                                .showsSidebar = isDrawn && view.showsSidebar(),
                                                .showsTabs = isDrawn,
                                                .zoomedLeaf = isDrawn ? view.zoomedLeaf : view.focusedLeaf()});
    view.store.interface().paneArea = view.layout.area();
}

/// All but the panes.
void ViewFrame::paintSurroundings(const ViewContext& view, Canvas& canvas) {
    sidebar_.paint(view, canvas);
    FramePainter::paintTabs(view, canvas);
    if (view.overlay != nullptr) view.overlay->paint(view, canvas);
    FramePainter::paintHints(view, canvas);
}

/// What is there for a moment; the panes below it are drawn anew with every frame.
void ViewFrame::paintOnTop(const ViewContext& view, Canvas& canvas) {
    if (view.drag) FramePainter::paintDrag(view, canvas);
    if (view.showsWelcome) FramePainter::paintWelcome(view, canvas);
    if (!view.typed.isEmpty()) FramePainter::paintCommands(view, canvas);
}

}  // namespace orvane
