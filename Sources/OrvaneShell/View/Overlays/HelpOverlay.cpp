#include "OrvaneShell/View/Overlays/HelpOverlay.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Keys/CommandRows.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

/// On the average a column is not so narrow that its texts mean nothing.
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

struct Column {
    int keyCols = 0;
    int cols = 0;

    /// As wide as its lines.
    static Column of(std::span<const Line> lines) {
        Column column;
        for (const Line& line : lines) {
            if (!line.keys.empty()) column.keyCols = std::max(column.keyCols, widthOf(line.keys) + 1);
        }
        for (const Line& line : lines)
            column.cols = std::max(column.cols, (line.keys.empty() ? 0 : column.keyCols) + widthOf(line.text));
        column.cols = std::min(column.cols, widest);
        return column;
    }
};

int colsOf(const std::vector<Column>& columns) {
    int sum = -between;
    for (const Column& column : columns)
        sum += column.cols + between;
    return sum;
}

/// Of lines that stand below each other so many at a time. Where there is no room for all of their texts, those of the
/// widest column are cut first.
std::vector<Column> columnsOf(std::span<const Line> lines, int rows, int room) {
    std::vector<Column> columns;
    for (const auto height = static_cast<std::size_t>(rows); !lines.empty();) {
        const std::size_t count = std::min(height, lines.size());
        columns.push_back(Column::of(lines.first(count)));
        lines = lines.subspan(count);
    }
    while (colsOf(columns) > room) {
        Column& largest = *std::ranges::max_element(columns, {}, &Column::cols);
        if (largest.cols <= 1) break;
        --largest.cols;
    }
    return columns;
}

/// As few columns as show all lines at once, if so many have room.
int columnCount(int lines, int room, int rows) {
    const int wanted = (lines + rows - 1) / std::max(rows, 1);
    return std::clamp(wanted, 1, std::max(1, (room + between) / (narrowest + between)));
}

/// A heading at the foot of a column goes to the head of the next one.
std::vector<Line> withoutLoneHeadings(std::vector<Line> lines, int rows) {
    for (auto at = static_cast<std::size_t>(rows) - 1; at + 1 < lines.size(); at += static_cast<std::size_t>(rows)) {
        if (lines[at].keys.empty()) lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), Line());
    }
    return lines;
}

/// Those of the lines that are in sight.
void paintColumn(CanvasPen& pen, const CellRect& sight, const CellRect& area, std::span<const Line> lines,
                 int keyCols) {
    int y = area.y;
    for (const Line& line : lines) {
        const int at = y++;
        if (at < sight.y || at >= sight.bottom()) continue;
        if (line.keys.empty()) {
            pen.text(area.x, at, line.text, ViewLook::bold, area.cols);
        } else {
            pen.text(area.x, at, line.keys, ViewLook::key, keyCols);
            pen.text(area.x + keyCols, at, line.text, ViewLook::plain, area.cols - keyCols);
        }
    }
}

}  // namespace

void HelpOverlay::paint(const ViewContext& view, Canvas& canvas) {
    auto lines = linesOf(view);
    const int room = canvas.cols() - 4;
    const int count = columnCount(static_cast<int>(lines.size()), room, std::max(1, canvas.rows() - 3));
    const auto rowsOf = [&] { return (static_cast<int>(lines.size()) + count - 1) / count; };
    lines = withoutLoneHeadings(std::move(lines), rowsOf());
    const int rows = rowsOf();
    const auto columns = columnsOf(lines, rows, room);
    const std::string title = view.l10n.text("view.help.title", KeyText::write(view.leader));
    const CellRect inside = DialogBox::paint(canvas, title, colsOf(columns), rows);
    CanvasPen pen(canvas, inside);
    lastFirst_ = std::max(0, rows - inside.rows);
    first_ = std::clamp(first_, 0, lastFirst_);
    CellRect area{inside.x, inside.y - first_, 0, rows};
    std::span<const Line> rest = lines;
    for (const Column& column : columns) {
        area.cols = column.cols;
        const std::size_t length = std::min(static_cast<std::size_t>(rows), rest.size());
        paintColumn(pen, inside, area, rest.first(length), column.keyCols);
        rest = rest.subspan(length);
        area.x += column.cols + between;
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
