#include "OrvaneShell/View/Overlays/HelpOverlay.h"

#include <algorithm>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewCommand.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int helpCols = 60;
constexpr int keyCols = 8;

struct Line {
    std::string_view keys;  ///< of a heading none
    std::string text;
};

std::vector<Line> linesOf(const ViewContext& view) {
    static constexpr std::array<std::string_view, 5> headings = {
        "view.group.panes", "view.group.sessions", "view.group.tabs", "view.group.projects", "view.group.view"};
    std::vector<Line> lines;
    std::optional<ViewCommand::Group> group;
    for (const ViewCommand& command : ViewCommand::all()) {
        if (group != command.group) {
            if (group) lines.push_back({});
            group = command.group;
            lines.push_back({{}, view.l10n.text(headings.at(static_cast<std::size_t>(command.group)))});
        }
        lines.push_back({command.shown(), view.l10n.text(command.textKey)});
    }
    lines.push_back({});
    lines.push_back({{}, view.l10n.text("view.group.mouse")});
    lines.push_back({" ", view.l10n.text("view.help.mouse")});
    return lines;
}

}  // namespace

void HelpOverlay::paint(const ViewContext& view, Canvas& canvas) {
    const auto lines = linesOf(view);
    const auto count = static_cast<int>(lines.size());
    const CellRect inside =
        DialogBox::paint(canvas, view.l10n.text("view.help.title", view.leaderText()), helpCols, count);
    CanvasPen pen(canvas, inside);
    lastFirst_ = std::max(0, count - inside.rows);
    first_ = std::clamp(first_, 0, lastFirst_);
    for (int row = 0; row < inside.rows && first_ + row < count; ++row) {
        const Line& line = lines[static_cast<std::size_t>(first_) + static_cast<std::size_t>(row)];
        const int y = inside.y + row;
        if (line.keys.empty()) {
            pen.text(inside.x, y, line.text, ViewLook::bold);
        } else {
            pen.text(inside.x + 1, y, line.keys, ViewLook::key, keyCols);
            pen.text(inside.x + 1 + keyCols, y, line.text, ViewLook::plain, inside.cols - keyCols - 1);
        }
    }
}

ViewOverlay::Next HelpOverlay::key(ViewContext& /*view*/, const KeyEvent& key) {
    const bool isDown = key.name == KeyName::down || key.name == KeyName::pageDown || key.character == 'j';
    const bool isUp = key.name == KeyName::up || key.name == KeyName::pageUp || key.character == 'k';
    if (!isDown && !isUp) return Next::closes;
    const bool isPage = key.name == KeyName::pageDown || key.name == KeyName::pageUp;
    first_ = std::clamp(first_ + (isDown ? 1 : -1) * (isPage ? 10 : 1), 0, lastFirst_);
    return Next::stays;
}

std::string HelpOverlay::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.help");
}

}  // namespace orvane
