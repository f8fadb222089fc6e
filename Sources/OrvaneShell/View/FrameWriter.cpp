#include "OrvaneShell/View/FrameWriter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "OrvaneShell/View/DisputedWidth.h"

namespace orvane {

namespace {

constexpr int longestRewrite = 4;     ///< cells; as many bytes as CUF has
constexpr int shortestErasedEnd = 4;  ///< EL has 3 bytes
constexpr int shortestErased = 12;    ///< ECH and the movement behind it have up to 10 bytes
constexpr int rowsWorthScrolling = 3;
/// A frame of so many bytes may last longer than terminals hold output back, so that its writing is seen.
constexpr std::size_t longestUnseen = 1024;

constexpr StoredCell blank{.text = ' '};

constexpr std::array<std::string_view, 6> cursorStyles{"\x1b[1 q", "\x1b[2 q", "\x1b[3 q",
                                                       "\x1b[4 q", "\x1b[5 q", "\x1b[6 q"};

bool areEqual(std::span<const StoredCell> a, std::span<const StoredCell> b) {
    return a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0;
}

std::size_t index(int value) {
    return static_cast<std::size_t>(value);
}

}  // namespace

FrameWriter::FrameWriter(const OuterTerminal& features) : features_(features) {
    out_.setFeatures(features);
    cells_.setGlyphs(features.plainGlyphs);
}

void FrameWriter::setFeatures(const OuterTerminal& features) {
    if (features == features_) return;
    features_ = features;
    out_.setFeatures(features);
    cells_.setGlyphs(features.plainGlyphs);
    invalidate();
}

std::string FrameWriter::frame(const Canvas& next) {
    out_.bytes.clear();
    const bool isFirst = !isKnown_ || next.cols() != cols_ || next.rows() != rows_;
    if (isFirst) startOver(next);
    cells_.tidy(shown_);
    if (findChanged(next) >= rowsWorthScrolling && !isFirst) scroll(next);
    for (int y = 0; y < rows_; ++y) {
        if (isChanged_[index(y)] != 0) drawRow(next, y);
    }
    out_.closeLink();
    return wrapped(next);
}

std::span<StoredCell> FrameWriter::rowOf(std::vector<StoredCell>& cells, int y) const {
    return std::span(cells).subspan(index(y) * index(cols_), index(cols_));
}

/// Tells rows that must be looked at from those that are as they were drawn; returns how many have other cells.
int FrameWriter::findChanged(const Canvas& next) {
    int count = 0;
    for (int y = 0; y < rows_; ++y) {
        const bool isSame = areEqual(next.row(y), rowOf(drawn_, y));
        isChanged_[index(y)] = isSame && contents_[index(y)] == FrameCells::Content::plain ? 0 : 1;
        count += isSame ? 0 : 1;
    }
    return count;
}

/// Moves rows that the terminal has elsewhere. What is wrong afterwards is drawn like all other changes.
void FrameWriter::scroll(const Canvas& next) {
    before_.clear();
    after_.clear();
    for (int y = 0; y < rows_; ++y) {
        before_.push_back(RowPrint::of(rowOf(drawn_, y)));
        after_.push_back(RowPrint::of(next.row(y)));
    }
    const auto scroll = findScroll(before_, after_);
    if (!scroll) return;
    out_.scroll(*scroll);
    moveRows(*scroll);
    findChanged(next);
}

void FrameWriter::moveRows(const RowScroll& scroll) {
    const auto move = [&](auto& values, std::size_t perRow, const auto& empty) {
        const auto begin = values.begin() + static_cast<std::ptrdiff_t>(index(scroll.top) * perRow);
        const auto end = values.begin() + static_cast<std::ptrdiff_t>(index(scroll.bottom) * perRow);
        const auto distance = scroll.count * static_cast<std::ptrdiff_t>(perRow);
        if (distance > 0) {
            std::fill(std::shift_left(begin, end, distance), end, empty);
        } else {
            std::fill(begin, std::shift_right(begin, end, -distance), empty);
        }
    };
    move(drawn_, index(cols_), StoredCell{});
    move(shown_, index(cols_), blank);
    move(contents_, 1, FrameCells::Content::plain);
}

void FrameWriter::startOver(const Canvas& next) {
    cols_ = next.cols();
    rows_ = next.rows();
    isKnown_ = true;
    const std::size_t count = index(cols_) * index(rows_);
    drawn_.assign(count, {});
    shown_.assign(count, blank);
    contents_.assign(index(rows_), FrameCells::Content::plain);
    isChanged_.assign(index(rows_), 1);
    row_.assign(index(cols_), blank);
    cursorState_ = CursorState::unknown;
    cursorStyle_.reset();
    out_.startOver();
}

void FrameWriter::drawRow(const Canvas& next, int y) {
    const FrameLinks links = features_.hyperlinks ? FrameLinks::written : FrameLinks::dropped;
    contents_[index(y)] = cells_.read(next, y, links, row_);
    std::ranges::copy(next.row(y), rowOf(drawn_, y).begin());
    if (areEqual(row_, rowOf(shown_, y))) return;
    drawCells(y);
    std::ranges::copy(row_, rowOf(shown_, y).begin());
}

void FrameWriter::drawCells(int y) {
    const auto shown = rowOf(shown_, y);
    const auto isBlank = [](const StoredCell& cell) { return cell == blank; };
    int end = cols_;  // of what is not blank
    while (end > 0 && isBlank(row_[index(end) - 1]))
        --end;
    disturbed_ = -1;
    for (int x = 0; x < cols_;) {
        const StoredCell& cell = row_[index(x)];
        if (cell == shown[index(x)] && x != disturbed_) {
            x += cell.width();
        } else if (isBlank(cell)) {
            x = drawBlanks(x, y, end);
        } else {
            drawCell(x, y);
            x += cell.width();
        }
    }
}

/// From a blank that is to be drawn; returns the column behind the last one that was.
int FrameWriter::drawBlanks(int x, int y, int end) {
    const bool isEnd = x >= end;
    int behind = x + 1;
    while (behind < cols_ && row_[index(behind)] == blank)
        ++behind;
    const int count = lastChanged(x, behind, y) + 1 - x;
    if (isEnd && count >= shortestErasedEnd) {
        moveTo(x, y);
        out_.setLook(blank);
        out_.eraseToEndOfRow();
        return cols_;
    }
    if (features_.eraseCharacters && count >= shortestErased) {
        moveTo(x, y);
        out_.setLook(blank);
        out_.eraseCharacters(count);
        return x + count;
    }
    drawCell(x, y);
    return x + 1;
}

/// The last cell between two columns that the terminal shows otherwise; at least the first.
int FrameWriter::lastChanged(int start, int end, int y) {
    const auto shown = rowOf(shown_, y);
    int last = end - 1;
    while (last > start && row_[index(last)] == shown[index(last)])
        --last;
    return last;
}

void FrameWriter::drawCell(int x, int y) {
    const StoredCell& cell = row_[index(x)];
    const bool isDisputed = isWidthDisputed(cell, cells_.clusters(), features_);
    moveTo(x, y);
    out_.setLook(cell);
    if (isDisputed && cell.isWide()) {
        // A terminal that takes it for narrow shows a blank behind it, not what was there.
        out_.bytes += "  ";
        out_.forgetPosition();
        moveTo(x, y);
    }
    out_.write(cell, cells_.clusters(), cols_);
    if (!isDisputed) return;
    out_.forgetPosition();
    if (!cell.isWide()) disturbed_ = x + 1;
}

void FrameWriter::moveTo(int x, int y) {
    if (y == out_.y() && out_.x() != FrameBytes::unknown && crossesByWriting(x)) return;
    out_.moveTo(x, y);
}

/// Over a few cells of the current look the cursor comes by writing them once more.
bool FrameWriter::crossesByWriting(int x) {
    const int start = out_.x();
    const int gap = x - start;
    if (gap <= 0 || gap > longestRewrite) return false;
    const auto cells = std::span(row_).subspan(index(start), index(gap));
    const auto isEasy = [&](const StoredCell& cell) {
        return cell.code() < 0x80 && cell.width() == 1 && out_.hasLook(cell);
    };
    if (!std::ranges::all_of(cells, isEasy)) return false;
    for (const StoredCell& cell : cells)
        out_.write(cell, cells_.clusters(), cols_);
    return true;
}

/// The frame with what surrounds it.
std::string FrameWriter::wrapped(const Canvas& next) {
    const std::size_t drawn = out_.bytes.size();
    const bool isHiding =
        drawn > 0 && cursorState_ != CursorState::hidden && (!features_.synchronizedOutput || drawn > longestUnseen);
    if (isHiding) cursorState_ = CursorState::hidden;
    placeCursor(next.cursor);
    if (drawn == 0) return std::exchange(out_.bytes, {});
    const std::string_view hide = isHiding ? "\x1b[?25l" : "";
    const std::string_view hold = features_.synchronizedOutput ? "\x1b[?2026h" : "";
    const std::string_view release = features_.synchronizedOutput ? "\x1b[?2026l" : "";
    std::string result;
    result.reserve(hold.size() + hide.size() + out_.bytes.size() + release.size());
    return result.append(hold).append(hide).append(out_.bytes).append(release);
}

void FrameWriter::placeCursor(const std::optional<Canvas::Cursor>& cursor) {
    if (!cursor || cursor->x < 0 || cursor->y < 0 || cursor->x >= cols_ || cursor->y >= rows_) {
        if (cursorState_ != CursorState::hidden) out_.bytes += "\x1b[?25l";
        cursorState_ = CursorState::hidden;
        return;
    }
    if (features_.cursorStyles && cursorStyle_ != cursor->style) {
        out_.bytes += cursorStyles[static_cast<std::size_t>(cursor->style)];
        cursorStyle_ = cursor->style;
    }
    out_.moveTo(cursor->x, cursor->y);
    if (cursorState_ != CursorState::shown) out_.bytes += "\x1b[?25h";
    cursorState_ = CursorState::shown;
}

}  // namespace orvane
