#include "OrvaneShell/View/Painting/FramePainter.h"

#include <algorithm>
#include <iterator>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Keys/CommandRows.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/SidebarRows.h"
#include "OrvaneShell/View/ViewHints.h"

namespace orvane::FramePainter {

namespace {

constexpr int commandCols = 26;
constexpr int welcomeCols = 84;

std::string tabTitle(const ViewContext& view, const Uuid& surface) {
    const SurfaceMeta* meta = view.store.workspace().surface(surface);
    if (meta == nullptr) return {};
    return TabCommands::titleOf(view, *meta);
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
    if (calls > 0) right = view.l10n.plural("view.calls", calls) + "  [" + view.keysOf("answer") + "]";
    // The keys of a dialog stay in sight; a notice stands beside them.
    const bool isBeside = view.overlay != nullptr && !view.notice().empty();
    if (isBeside) right = Text::oneLine(view.notice());
    const int rightCols = std::min(static_cast<int>(Text::displayWidth(right)), row.cols / 2);
    const bool isNotice = !view.notice().empty() && !isBeside;
    const int leftCols = std::max(0, row.cols - rightCols - 3);
    const std::string left = isNotice ? Text::oneLine(view.notice()) : ViewHints::now(view, leftCols);
    const bool isUrgent = isNotice || !view.typed.isEmpty() || view.isLocked;
    const bool isOther = view.overlay != nullptr || view.drag;
    const Attribute look = isUrgent ? ViewLook::bold : isOther ? ViewLook::plain : ViewLook::dim;
    pen.text(row.x + 1, row.y, left, look, leftCols);
    pen.text(row.right() - rightCols - 1, row.y, right, ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold),
             rightCols);
}

void paintDrag(const ViewContext& view, Canvas& canvas) {
    canvas.cursor.reset();
    const CellRect& preview = view.drag->preview;
    const SessionController* session = view.store.session(view.drag->content);
    if (preview.isEmpty() || session == nullptr) return;
    CanvasPen pen(canvas, preview);
    pen.fill(preview, ViewLook::selected);
    if (preview.rows > 2) {
        DialogBox::frame(pen, preview, session->title());
        pen.restyle(preview, ViewLook::onBar);
    } else {
        pen.text(preview.x + 1, preview.y, session->title(), ViewLook::selected, preview.cols - 2);
    }
}

void paintWelcome(const ViewContext& view, Canvas& canvas) {
    const CellRect& work = view.layout.work;
    const int cols = std::min(welcomeCols, work.cols - 2);
    std::vector<std::string> lines;
    for (const std::string& paragraph : ViewHints::welcome(view))
        std::ranges::copy(wrapped(paragraph, cols - 4), std::back_inserter(lines));
    const int rows = std::min(static_cast<int>(lines.size()) + 2, work.rows - 1);
    if (cols < 8 || rows < 3) return;
    const CellRect box{work.x + (work.cols - cols) / 2, work.bottom() - rows, cols, rows};
    CanvasPen pen(canvas, box);
    DialogBox::frame(pen, box, view.l10n.text("view.welcome.title"));
    for (int row = 0; row < rows - 2; ++row)
        pen.text(box.x + 2, box.y + 1 + row, lines[static_cast<std::size_t>(row)], ViewLook::plain, cols - 4);
}

void paintCommands(const ViewContext& view, Canvas& canvas) {
    auto commands = CommandRow::of(view, view.typed);
    const int columns = std::max(1, (canvas.cols() - 2) / commandCols);
    const int wanted = (static_cast<int>(commands.size()) + columns - 1) / columns;
    const int rows = std::min(wanted, std::max(0, view.layout.hints.y - 2));
    const CellRect area{0, view.layout.hints.y - rows - 1, canvas.cols(), rows + 1};
    CanvasPen pen(canvas, area);
    pen.fill(area, ViewLook::plain);
    pen.fill({area.x, area.y, area.cols, 1}, ViewLook::dim, U'─');
    const int room = rows * columns;
    const bool isCut = static_cast<int>(commands.size()) > room;
    // Where they do not fit, the last place tells where they are all.
    if (isCut && room > 0) {
        const auto help = std::ranges::find(commands, "view.command.help", &CommandRow::textKey);
        if (help != commands.end()) std::iter_swap(help, commands.begin() + room - 1);
    }
    for (int i = 0; i < std::min(static_cast<int>(commands.size()), room); ++i) {
        const CommandRow& command = commands[static_cast<std::size_t>(i)];
        const int x = 1 + i / rows * commandCols;
        const int y = area.y + 1 + i % rows;
        const int used = pen.text(x, y, command.keys, ViewLook::key);
        pen.text(x + std::max(used, 2) + 1, y, command.text, ViewLook::plain, commandCols - std::max(used, 2) - 2);
    }
    canvas.cursor.reset();
}

}  // namespace orvane::FramePainter
