#include "OrvaneShell/View/Painting/PanePainter.h"

#include <algorithm>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
#include "OrvaneShell/View/Painting/PaneTitle.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/TracePanel.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

void paintLines(CanvasPen& pen, const CellRect& body, const std::vector<std::string>& lines) {
    int y = body.y + std::max(0, (body.rows - static_cast<int>(lines.size())) / 3);
    for (const std::string& line : lines)
        pen.text(body.x + 2, y++, line, ViewLook::dim, std::max(0, body.cols - 3));
}

void paintEmpty(const ViewContext& view, CanvasPen& pen, const ViewLayout::Pane& pane) {
    const auto title = view.comingBack(pane.leaf);
    const std::string line = title ? view.l10n.text("view.pane.comingBack", *title)
                                   : view.l10n.text("view.pane.empty", view.keysOf("new-session"));
    paintLines(pen, pane.body, wrapped(line, pane.body.cols - 3));
}

/// A surface that has no drawing here.
void paintForeign(const ViewContext& view, CanvasPen& pen, const ViewLayout::Pane& pane) {
    const SurfaceMeta* meta = pane.content ? view.store.workspace().surface(*pane.content) : nullptr;
    if (meta != nullptr) paintLines(pen, pane.body, {meta->title});
}

}  // namespace

void PanePainter::paint(ViewContext& view, Canvas& canvas, Part part) {
    isHeldBack_ = false;
    // What an overlay covered cannot be kept.
    const bool isCovered = view.overlay != nullptr || view.drag;
    if (isCovered || wasCovered_) shown_.clear();
    wasCovered_ = isCovered;
    canvas.cursor.reset();
    CanvasPen pen(canvas, view.layout.work);
    if (view.layout.panes.empty()) {
        pen.fill(view.layout.work, ViewLook::plain);
        const char* key = view.project() ? "view.tab.foreign" : "view.noProject";
        paintLines(pen, view.layout.work,
                   wrapped(view.l10n.text(key, view.keysOf("open-project")), view.layout.work.cols - 3));
    }
    for (const ViewLayout::Divider& divider : view.layout.dividers) {
        if (view.layout.splits[divider.split].axis == PaneAxis::horizontal) pen.fill(divider.line, ViewLook::dim, U'│');
    }
    for (const ViewLayout::Pane& pane : view.layout.panes)
        paintPane(view, canvas, pane, part);
    shown_ = std::move(showsNow_);
    showsNow_.clear();
}

bool PanePainter::isTitleStale(const ViewContext& view, const ViewLayout::Pane& pane) {
    const SessionController* session = view.sessionIn(pane);
    const bool isScrolledBack =
        session != nullptr && session->terminal() != nullptr && !HistoryMode::isAtNewest(session->terminal()->terminal);
    const bool wasScrolledBack = scrolledBack_.erase(pane.leaf) > 0;
    if (isScrolledBack) scrolledBack_.insert(pane.leaf);
    return isScrolledBack || wasScrolledBack;
}

void PanePainter::paintPane(ViewContext& view, Canvas& canvas, const ViewLayout::Pane& pane, Part part) {
    CanvasPen pen(canvas, view.layout.work);
    if (isTitleStale(view, pane) || part == Part::whole) PaneTitle::paint(view, pen, pane);
    if (pane.body.isEmpty()) return;
    SessionController* session = view.sessionIn(pane);
    if (session != nullptr && session->terminal() != nullptr) return paintTerminal(view, canvas, pane, *session);
    pen.fill(pane.body, ViewLook::plain);
    if (!pane.content) return paintEmpty(view, pen, pane);
    if (session == nullptr) return paintForeign(view, pen, pane);
    paintLines(pen, pane.body, {session->title()});
}

void PanePainter::paintTerminal(ViewContext& view, Canvas& canvas, const ViewLayout::Pane& pane,
                                SessionController& session) {
    Terminal& terminal = session.terminal()->terminal;
    const bool fits =
        terminal.cols() == std::max(pane.body.cols, Terminal::MINIMUM_COLS) && terminal.rows() == pane.body.rows;
    if (!fits) terminal.resize(pane.body.cols, pane.body.rows);
    TracePanel* panel = view.tracePanel(session.id());
    const CellRect covered = panel == nullptr ? CellRect() : TracePanel::area(pane.body);
    // What a panel covered cannot be kept either.
    const std::pair shows(session.id(),
                          CellRect{pane.body.x, pane.body.y, pane.body.cols - covered.cols, pane.body.rows});
    showsNow_[pane.leaf] = shows;
    const auto before = shown_.find(pane.leaf);
    const bool isKept =
        fits && terminal.modes().synchronizedOutputActive && before != shown_.end() && before->second == shows;
    isHeldBack_ = isHeldBack_ || isKept;
    CanvasPen pen(canvas, pane.body);
    if (!isKept) pen.terminal(pane.body, terminal);
    if (view.selection.session() == session.id()) view.selection.paint(pen, pane.body, terminal);
    if (view.link && view.link->session == session.id()) PaneLinks::paint(pen, pane.body, terminal, *view.link);
    if (panel != nullptr) panel->paint(view, canvas, covered, session);
    const bool isFocused = view.focusedLeaf() == pane.leaf;
    if (!isFocused || terminal.modes().cursorHidden || !HistoryMode::isAtNewest(terminal) || !session.isActive())
        return;
    const auto [x, y] = terminal.getCursorLocation();
    if (x < pane.body.cols - covered.cols && y < pane.body.rows)
        canvas.cursor = Canvas::Cursor{.x = pane.body.x + x, .y = pane.body.y + y, .style = terminal.cursorStyle()};
}

}  // namespace orvane
