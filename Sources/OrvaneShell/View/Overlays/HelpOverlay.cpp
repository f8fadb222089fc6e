#include "OrvaneShell/View/Overlays/HelpOverlay.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Keys/CommandRows.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

/// A column is never so narrow that its texts mean nothing, nor wider than they are.
constexpr int narrowest = 24;
constexpr int widest = 44;
constexpr int between = 2;

struct Line {
    std::string keys = {};  ///< of a heading none
    std::string text;
};

std::vector<Line> linesOf(const ViewContext& view) {
    static constexpr std::array<std::string_view, 5> headings = {
        "view.group.panes", "view.group.sessions", "view.group.tabs", "view.group.projects", "view.group.view"};
    std::vector<Line> lines;
    std::optional<ViewCommand::Group> group;
    for (CommandRow& row : CommandRow::of(view, {})) {
        if (group != row.group) {
            group = row.group;
            lines.push_back({.text = view.l10n.text(headings.at(static_cast<std::size_t>(row.group)))});
        }
        lines.push_back({.keys = std::move(row.keys), .text = std::move(row.text)});
    }
    lines.push_back({.text = view.l10n.text("view.group.mouse")});
    for (const char* key : {"view.help.mouse.select", "view.help.mouse.move", "view.help.mouse.shift"})
        lines.push_back({.keys = " ", .text = view.l10n.text(key)});
    return lines;
}

int widthOf(const std::string& text) {
    return static_cast<int>(Text::displayWidth(text));
}

/// As many columns as are needed to see all lines at once, and as few as possible.
struct Columns {
    int count = 1;
    int keyCols = 0;
    int cols = 0;
    int rows = 0;

    static Columns of(const std::vector<Line>& lines, int room, int rows) {
        Columns columns;
        int textCols = 0;
        for (const Line& line : lines) {
            columns.keyCols = std::max(columns.keyCols, widthOf(line.keys) + 1);
            textCols = std::max(textCols, widthOf(line.text));
        }
        const auto count = static_cast<int>(lines.size());
        const int wanted = std::min(columns.keyCols + textCols, widest);
        columns.count = std::clamp((count + rows - 1) / std::max(rows, 1), 1,
                                   std::max(1, (room + between) / (narrowest + between)));
        columns.cols = std::min(wanted, (room + between) / columns.count - between);
        columns.rows = (count + columns.count - 1) / columns.count;
        return columns;
    }
};

/// A heading at the foot of a column goes to the head of the next one.
std::vector<Line> withoutLoneHeadings(std::vector<Line> lines, int rows) {
    for (auto at = static_cast<std::size_t>(rows) - 1; at + 1 < lines.size(); at += static_cast<std::size_t>(rows)) {
        if (lines[at].keys.empty()) lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), Line());
    }
    return lines;
}

}  // namespace

void HelpOverlay::paint(const ViewContext& view, Canvas& canvas) {
    auto lines = linesOf(view);
    Columns columns = Columns::of(lines, canvas.cols() - 4, canvas.rows() - 3);
    lines = withoutLoneHeadings(std::move(lines), columns.rows);
    columns.rows = std::max(columns.rows, (static_cast<int>(lines.size()) + columns.count - 1) / columns.count);
    const int cols = columns.count * (columns.cols + between) - between;
    const std::string title = view.l10n.text("view.help.title", KeyText::write(view.leader));
    const CellRect inside = DialogBox::paint(canvas, title, cols, columns.rows);
    CanvasPen pen(canvas, inside);
    lastFirst_ = std::max(0, columns.rows - inside.rows);
    first_ = std::clamp(first_, 0, lastFirst_);
    for (int index = 0; index < static_cast<int>(lines.size()); ++index) {
        const Line& line = lines[static_cast<std::size_t>(index)];
        const int y = inside.y + index % columns.rows - first_;
        if (y < inside.y || y >= inside.bottom()) continue;
        const int x = inside.x + index / columns.rows * (columns.cols + between);
        if (line.keys.empty()) {
            pen.text(x, y, line.text, ViewLook::bold, columns.cols);
        } else {
            pen.text(x, y, line.keys, ViewLook::key, columns.keyCols);
            pen.text(x + columns.keyCols, y, line.text, ViewLook::plain, columns.cols - columns.keyCols);
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
    return view.l10n.text(lastFirst_ > 0 ? "view.hint.help" : "view.hint.anyKey");
}

}  // namespace orvane
