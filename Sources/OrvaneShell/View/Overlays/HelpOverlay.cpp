#include "OrvaneShell/View/Overlays/HelpOverlay.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Keys/CommandRows.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

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
    for (const char* key :
         {"view.help.mouse.select", "view.help.mouse.move", "view.help.mouse.link", "view.help.mouse.shift"})
        lines.push_back({.keys = " ", .text = view.l10n.text(key)});
    return lines;
}

int widthOf(const std::string& text) {
    return static_cast<int>(Text::displayWidth(text));
}

/// A heading at the foot of a column goes to the head of the next one.
std::vector<Line> withoutLoneHeadings(std::vector<Line> lines, int rows) {
    for (auto at = static_cast<std::size_t>(rows) - 1; at + 1 < lines.size(); at += static_cast<std::size_t>(rows)) {
        if (lines[at].keys.empty()) lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), Line());
    }
    return lines;
}

/// Lines in columns, from top to bottom and from left to right.
struct Columns {
    struct Column {
        int keyCols = 0;
        int cols = 0;
    };
    std::vector<Line> lines;
    std::vector<Column> columns;
    int rows = 1;
    int cols = 0;

    Columns(const std::vector<Line>& all, int count) {
        rows = std::max(1, (static_cast<int>(all.size()) + count - 1) / count);
        lines = withoutLoneHeadings(all, rows);
        rows = std::max(rows, (static_cast<int>(lines.size()) + count - 1) / count);
        for (std::size_t first = 0; first < lines.size(); first += static_cast<std::size_t>(rows))
            add(std::span(lines).subspan(first, std::min(static_cast<std::size_t>(rows), lines.size() - first)));
    }

    /// As few columns as show all lines at once; where that would cut texts, as many as do not.
    static Columns of(const std::vector<Line>& lines, int room, int rows) {
        Columns best(lines, 1);
        for (int count = 2; best.rows > rows; ++count) {
            Columns more(lines, count);
            if (more.cols > room || more.rows >= best.rows) break;
            best = std::move(more);
        }
        return best;
    }

 private:
    void add(std::span<const Line> column) {
        int keyCols = 0;
        int whole = 0;
        int texts = 0;
        for (const Line& line : column) {
            const bool hasKeys = !Text::trimmed(line.keys).empty();
            if (hasKeys) keyCols = std::max(keyCols, widthOf(line.keys) + 1);
            (hasKeys ? texts : whole) = std::max(hasKeys ? texts : whole, widthOf(line.text));
        }
        columns.push_back({keyCols, std::max(whole, keyCols + texts)});
        cols += columns.back().cols + (columns.size() > 1 ? between : 0);
    }
};

}  // namespace

void HelpOverlay::paint(const ViewContext& view, Canvas& canvas) {
    const Columns all = Columns::of(linesOf(view), canvas.cols() - 4, canvas.rows() - 2);
    const std::string title = view.l10n.text("view.help.title", KeyText::write(view.leader));
    const CellRect inside = DialogBox::paint(canvas, title, std::max(all.cols, widthOf(title) + 2), all.rows);
    CanvasPen pen(canvas, inside);
    lastFirst_ = std::max(0, all.rows - inside.rows);
    first_ = std::clamp(first_, 0, lastFirst_);
    int x = inside.x;
    for (std::size_t column = 0; column < all.columns.size(); ++column) {
        const auto [keyCols, cols] = all.columns[column];
        for (int row = first_; row < std::min(all.rows, first_ + inside.rows); ++row) {
            const std::size_t index = column * static_cast<std::size_t>(all.rows) + static_cast<std::size_t>(row);
            if (index >= all.lines.size()) break;
            const Line& line = all.lines[index];
            const bool hasKeys = !Text::trimmed(line.keys).empty();
            const int y = inside.y + row - first_;
            if (hasKeys) pen.text(x, y, line.keys, ViewLook::key, keyCols);
            pen.text(x + (hasKeys ? keyCols : 0), y, line.text, line.keys.empty() ? ViewLook::bold : ViewLook::plain,
                     inside.right() - x);
        }
        x += cols + between;
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
