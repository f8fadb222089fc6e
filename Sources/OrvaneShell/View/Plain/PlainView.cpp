#include "OrvaneShell/View/Plain/PlainView.h"
#include "OrvaneShell/View/ViewHints.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

constexpr int dialogCols = 120;
constexpr int dialogRows = 100;

std::string paneTitle(const ViewContext& view) {
    if (const SessionController* session = view.focusedSession()) return Text::oneLine(session->title());
    const auto leaf = view.focusedLeaf();
    return leaf ? view.comingBack(*leaf).value_or(view.l10n.text("view.plain.emptyPane")) : std::string();
}

/// "1 Workspace"
std::string tabTitle(const ViewContext& view) {
    const WorkspaceModel& workspace = view.store.workspace();
    if (!view.project() || !view.layout.surface) return {};
    const auto tabs = workspace.visibleSurfaces(*view.project());
    const auto tab = std::ranges::find(tabs, *view.layout.surface, &SurfaceMeta::id);
    if (tab == tabs.end()) return {};
    return std::to_string(tab - tabs.begin() + 1) + " " +
           Text::oneLine(SurfaceTabs::title(tab->title, tab->payload, view.l10n.text("shell.tab.workspace")));
}

std::string placeLine(const ViewContext& view) {
    const Project* project = view.project() ? view.store.workspace().project(*view.project()) : nullptr;
    if (project == nullptr) return {};
    const std::string name = Text::oneLine(project->name);
    if (!view.focusedLeaf()) return view.l10n.text("view.plain.project", name);
    return view.l10n.text("view.plain.place", paneTitle(view), tabTitle(view), name);
}

}  // namespace

std::string PlainView::frame(ViewContext& view, const Canvas& canvas, GlyphSet glyphs) {
    tellPlace(view);
    for (const std::string& line : std::exchange(announcements_, {}))
        writer_.line(Text::oneLine(line));
    if (view.notice() != notice_) writer_.line(Text::oneLine(view.notice()));
    notice_ = view.notice();
    // Nobody sees it, so that it has room for all there is to read.
    dialog_.resize(std::max(canvas.cols(), dialogCols), std::max(canvas.rows(), dialogRows));
    if (view.overlay != nullptr) view.overlay->paint(view, dialog_);
    const PlainScreen dialog = PlainScreen::of(dialog_, {0, 0, dialog_.cols(), dialog_.rows()});
    const bool hasDialog = std::ranges::any_of(dialog.rows, [](const PlainRow& row) { return !row.text.empty(); });
    if (hasDialog) {
        writer_.dialog(dialog);
    } else {
        // What the pane shows meanwhile is told afterwards.
        writer_.endDialog();
        tellPane(view, canvas);
    }
    tellHint(view);
    return textIn(glyphs, writer_.take());
}

void PlainView::tellPlace(const ViewContext& view) {
    const SessionController* session = view.focusedSession();
    const Place place{.leaf = view.focusedLeaf(),
                      .session = session == nullptr ? std::nullopt : std::optional(session->id())};
    const std::string line = placeLine(view);
    if (place_ == place && placeLine_ == line) return;
    if (!place_) {
        writer_.line(ViewHints::normal(view, dialogCols));
    }
    isNewPlace_ = isNewPlace_ || place_ != place;
    place_ = place;
    placeLine_ = line;
    writer_.line(line);
}

void PlainView::tellPane(const ViewContext& view, const Canvas& canvas) {
    const auto leaf = view.focusedLeaf();
    const ViewLayout::Pane* pane = leaf ? view.layout.pane(*leaf) : nullptr;
    const CellRect area = pane == nullptr ? view.layout.work : pane->body;
    const SessionController* session = view.focusedSession();
    const bool hasTerminal = session != nullptr && session->terminal() != nullptr;
    const bool isOther = std::exchange(isNewPlace_, false);
    const bool isResized = std::exchange(size_, area) != area;
    const auto from = isOther || isResized || isWhole_ ? std::nullopt : writer_.firstNumber();
    const PlainScreen screen =
        hasTerminal ? PlainScreen::of(session->terminal()->terminal, from) : PlainScreen::of(canvas, area);
    if (screen.lost > 0) writer_.line(view.l10n.plural("view.plain.lost", screen.lost));
    if (std::exchange(isWhole_, false) || (isOther && !hasTerminal)) {
        writer_.wholeScreen(screen);
    } else if (isOther || isResized) {
        writer_.newScreen(screen);
    } else {
        writer_.screen(screen);
    }
}

/// The keys that work now, when they are others than a moment ago.
void PlainView::tellHint(const ViewContext& view) {
    std::string hint;
    if (!view.typed.isEmpty() || view.isLocked || view.overlay != nullptr) hint = ViewHints::now(view, dialogCols);
    if (std::exchange(hint_, hint) != hint) writer_.line(hint);
}

}  // namespace orvane
