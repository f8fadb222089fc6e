#include "OrvaneShell/View/Painting/FramePainter.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/SidebarRows.h"
#include "OrvaneShell/View/ViewCommand.h"

namespace orvane::FramePainter {

namespace {

constexpr int commandCols = 26;

std::string tabTitle(const ViewContext& view, const Uuid& surface) {
    const SurfaceMeta* meta = view.store.workspace().surface(surface);
    if (meta == nullptr) return {};
    return Text::oneLine(SurfaceTabs::title(meta->title, meta->payload, view.l10n.text("shell.tab.workspace")));
}

/// Whether a session that needs the user is in a pane of the tab.
bool isCalling(const ViewContext& view, const Uuid& surface) {
    const auto tree = view.store.workspace().surfaceTrees.find(surface);
    if (tree == view.store.workspace().surfaceTrees.end()) return false;
    return std::ranges::any_of(tree->second.contentIDs(), [&](const Uuid& content) {
        const SessionController* session = view.store.session(content);
        return session != nullptr && SidebarRow::needsUser(*session);
    });
}

std::string normalHint(const ViewContext& view) {
    const std::string leader = view.leaderText();
    return view.l10n.text("view.hint.normal", leader, leader, leader);
}

}  // namespace

void paintTabs(const ViewContext& view, Canvas& canvas) {
    const CellRect& strip = view.layout.tabStrip;
    if (strip.isEmpty()) return;
    CanvasPen pen(canvas, strip);
    pen.fill(strip, ViewLook::plain);
    int number = 0;
    for (const ViewLayout::Tab& tab : view.layout.tabs) {
        const bool isShown = view.layout.surface == tab.surface;
        Attribute look = isShown ? ViewLook::bold : ViewLook::dim;
        if (isShown) look = ViewLook::onBar(look);
        pen.fill(tab.rect, look);
        const std::string call = isCalling(view, tab.surface) ? "! " : "";
        pen.text(tab.rect.x + 1, tab.rect.y, std::to_string(++number) + " " + call + tabTitle(view, tab.surface), look,
                 std::max(0, tab.rect.cols - 2));
    }
    if (view.layout.hiddenTabs.empty()) return;
    const bool isShownHidden = std::ranges::any_of(
        view.layout.hiddenTabs, [&](const SurfaceMeta& meta) { return view.layout.surface == meta.id; });
    pen.text(view.layout.hiddenTabsMark.x, strip.y, "+" + std::to_string(view.layout.hiddenTabs.size()),
             isShownHidden ? ViewLook::selected : ViewLook::dim, view.layout.hiddenTabsMark.cols);
}

void paintHints(const ViewContext& view, Canvas& canvas) {
    const CellRect& row = view.layout.hints;
    if (row.isEmpty()) return;
    if (view.overlay != nullptr && view.overlay->paintRow(view, canvas, row)) return;
    CanvasPen pen(canvas, row);
    pen.fill(row, ViewLook::plain);
    const auto calls = std::ranges::count_if(view.store.sessions(),
                                             [](const auto& session) { return SidebarRow::needsUser(*session); });
    std::string right;
    if (calls > 0) right = view.l10n.plural("view.calls", calls) + "  [" + view.leaderText() + " a]";
    const int rightCols = std::min(static_cast<int>(Text::displayWidth(right)), row.cols / 2);
    std::string left = normalHint(view);
    Attribute look = ViewLook::dim;
    if (!view.notice().empty()) {
        left = Text::oneLine(view.notice());
        look = ViewLook::bold;
    } else if (view.isLeaderDown) {
        left = view.l10n.text("view.hint.leader", view.leaderText());
        look = ViewLook::bold;
    } else if (view.overlay != nullptr) {
        left = view.overlay->hint(view);
        look = ViewLook::plain;
    }
    pen.text(row.x + 1, row.y, left, look, std::max(0, row.cols - rightCols - 3));
    pen.text(row.right() - rightCols - 1, row.y, right, ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold),
             rightCols);
}

void paintCommands(const ViewContext& view, Canvas& canvas) {
    const auto commands = ViewCommand::all();
    const int columns = std::max(1, (canvas.cols() - 2) / commandCols);
    const int wanted = (static_cast<int>(commands.size()) + columns - 1) / columns;
    const int rows = std::min(wanted, std::max(0, view.layout.hints.y - 2));
    const CellRect area{0, view.layout.hints.y - rows - 1, canvas.cols(), rows + 1};
    CanvasPen pen(canvas, area);
    pen.fill(area, ViewLook::plain);
    pen.fill({area.x, area.y, area.cols, 1}, ViewLook::dim, U'─');
    // Where they do not fit, the help has them all.
    for (int i = 0; i < std::min(static_cast<int>(commands.size()), rows * columns); ++i) {
        const ViewCommand& command = commands[static_cast<std::size_t>(i)];
        const int x = 1 + i / rows * commandCols;
        const int y = area.y + 1 + i % rows;
        const int used = pen.text(x, y, command.shown(), ViewLook::key);
        pen.text(x + std::max(used, 2) + 1, y, view.l10n.text(command.textKey), ViewLook::plain,
                 commandCols - std::max(used, 2) - 2);
    }
    canvas.cursor.reset();
}

}  // namespace orvane::FramePainter
