#include "OrvaneShell/View/CanvasPen.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "TerminalEmulator/Buffer/Pen.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/Unicode/UnicodeUtil.h"

namespace orvane {

namespace {

constexpr TextCell ellipsis{.code = 0x2026, .width = 1};
constexpr std::uint32_t inverseBit = static_cast<std::uint32_t>(Attribute::CharacterStyle::inverse) << 24;

int columnsOf(std::span<const TextCell> cells) {
    int columns = 0;
    for (const TextCell& cell : cells)
        columns += cell.width;
    return columns;
}

/// Leaves so many columns, the last of them for the ellipsis when some had to go.
void shorten(std::vector<TextCell>& cells, int limit) {
    int columns = columnsOf(cells);
    if (columns <= limit) return;
    while (!cells.empty() && columns > limit - 1) {
        columns -= cells.back().width;
        cells.pop_back();
    }
    cells.push_back(ellipsis);
}

/// Each character followed by as many blanks as it has columns.
std::vector<StoredCell> spacedOut(const RowView& row) {
    std::vector<StoredCell> cells;
    cells.reserve(2 * row.cells.size());
    for (const StoredCell& cell : row.cells) {
        if (cell.isRightHalf()) continue;
        cells.push_back(cell);
        if (cell.isWide()) {
            cells.insert(cells.end(), {cell.with(0, 0), cell.emptied(), cell.emptied()});
        } else {
            cells.push_back(cell.emptied());
        }
    }
    return cells;
}

/// Clusters of one table as those of another one. Most cells of a kind stand close to each other.
class Carrier {
 public:
    Carrier(const ClusterTable& from, ClusterTable& to) : from_(from), to_(to) {}

    StoredCell carried(const StoredCell& cell) {
        if ((cell.text & StoredCell::codeMask) < StoredCell::firstCluster) return cell;
        if (cell.code() != code_) {
            code_ = cell.code();
            carried_ = to_.charToIndex(from_.indexToChar(code_));
        }
        return cell.with(carried_, cell.width());
    }

 private:
    const ClusterTable& from_;
    ClusterTable& to_;
    std::int32_t code_ = 0;
    std::int32_t carried_ = 0;
};

}  // namespace

CanvasPen::CanvasPen(Canvas& canvas, const CellRect& area)
    : canvas_(canvas), area_(area.intersection({0, 0, canvas.cols(), canvas.rows()})) {}

int CanvasPen::text(int x, int y, std::string_view text, const Attribute& look, int limit) {
    limit = std::min(limit, area_.right() - x);
    if (limit <= 0 || y < area_.y || y >= area_.bottom()) return 0;
    std::vector<TextCell> cells = textCells(text, canvas_.clusters(), limit);
    shorten(cells, limit);
    const int start = x;
    const StoredCell cell = Pen(canvas_.theme.applied(look)).cell();
    cutEdges(y, std::max(start, area_.x), start + columnsOf(cells));
    for (const TextCell& character : cells) {
        put(x, y, character, cell);
        x += character.width;
    }
    return x - start;
}

void CanvasPen::put(int x, int y, const TextCell& character, const StoredCell& look) {
    const auto row = canvas_.row(y);
    const bool isWhole = x >= area_.x && x + character.width <= area_.right();
    for (int col = std::max(x, area_.x); col < std::min(x + character.width, area_.right()); ++col) {
        StoredCell& cell = row[static_cast<std::size_t>(col)];
        cell = !isWhole ? look : col == x ? look.with(character.code, character.width) : look.with(0, 0);
    }
}

void CanvasPen::fill(const CellRect& rect, const Attribute& look, char32_t character) {
    const CellRect clip = rect.intersection(area_);
    if (clip.isEmpty()) return;
    const int width = std::max(UnicodeUtil::columnWidth(character), 1);
    const bool isBlank = UnicodeUtil::columnWidth(character) == 0;
    const TextCell cell{.code = isBlank ? 0 : static_cast<std::int32_t>(character), .width = width};
    const StoredCell blank = Pen(canvas_.theme.applied(look)).cell();
    for (int y = clip.y; y < clip.bottom(); ++y) {
        cutEdges(y, clip.x, clip.right());
        for (int x = clip.x; x + width <= clip.right(); x += width)
            put(x, y, cell, blank);
        if (clip.cols % width != 0) put(clip.right() - 1, y, {}, blank);
    }
}

void CanvasPen::restyle(const CellRect& rect, const std::function<Attribute(Attribute)>& change) {
    const CellRect clip = rect.intersection(area_);
    StoredCell before;
    StoredCell after = Pen(change({})).cell();
    for (int y = clip.y; y < clip.bottom(); ++y) {
        for (StoredCell& cell :
             canvas_.row(y).subspan(static_cast<std::size_t>(clip.x), static_cast<std::size_t>(clip.cols))) {
            if (cell.emptied() != before) {
                before = cell.emptied();
                Pen pen(change(before.unpack().attribute), before.payload());
                pen.setIsProtected(before.isProtected());
                after = pen.cell();
            }
            cell = after.with(cell.code(), cell.width());
        }
    }
}

void CanvasPen::terminal(const CellRect& rect, const Terminal& terminal) {
    const CellRect clip = rect.intersection(area_);
    if (clip.isEmpty()) return;
    const std::uint32_t flipped = terminal.modes().reverseVideo ? inverseBit : 0;
    const CellRect reached{rect.x, rect.y, std::min(rect.cols, terminal.cols()), std::min(rect.rows, terminal.rows())};
    const CellRect shown = reached.intersection(clip);
    if (shown != clip) fill(clip, {}, 0);
    Carrier carrier(terminal.clusters(), canvas_.clusters());
    std::vector<StoredCell> spaced;
    for (int y = shown.y; y < shown.bottom(); ++y) {
        cutEdges(y, shown.x, shown.right());
        const RowView row = terminal.getLine(y - rect.y);
        const bool isSpaced = row.renderMode != RenderLineMode::single;
        if (isSpaced) spaced = spacedOut(row);
        copy(shown, y, {isSpaced ? std::span<const StoredCell>(spaced) : row.cells, rect.x, flipped});
        const auto cells = canvas_.row(y);
        for (int x = shown.x; x < shown.right(); ++x) {
            StoredCell& cell = cells[static_cast<std::size_t>(x)];
            cell = carrier.carried(cell);
        }
    }
}

/// The part of the row that is seen through the clip; cells behind its end are blank.
void CanvasPen::copy(const CellRect& clip, int y, const Source& source) {
    const auto row = canvas_.row(y);
    for (int x = clip.x; x < clip.right(); ++x) {
        const auto index = static_cast<std::size_t>(x - source.x);
        StoredCell cell = index < source.cells.size() ? source.cells[index] : StoredCell{};
        cell.text ^= source.flipped;
        const bool isCut = (x == clip.x && cell.isRightHalf()) || (x + 1 == clip.right() && cell.isWide());
        row[static_cast<std::size_t>(x)] = isCut ? cell.emptied() : cell;
    }
}

/// Blanks the halves that stay behind when the columns from `start` to `end` are drawn anew.
void CanvasPen::cutEdges(int y, int start, int end) {
    const auto row = canvas_.row(y);
    for (const int edge : {start, std::min(end, area_.right())}) {
        if (edge <= 0 || edge >= canvas_.cols()) continue;
        StoredCell& right = row[static_cast<std::size_t>(edge)];
        StoredCell& left = row[static_cast<std::size_t>(edge) - 1];
        if (!right.isRightHalf()) continue;
        right = right.emptied();
        left = left.emptied();
    }
}

}  // namespace orvane
