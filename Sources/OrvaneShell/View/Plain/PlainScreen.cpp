#include "OrvaneShell/View/Plain/PlainScreen.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

/// Box lines and block elements, and the line pieces of the technical signs.
bool isDecoration(char32_t character) {
    return (character >= 0x2500 && character <= 0x259F) || (character >= 0x23B8 && character <= 0x23BF) ||
           (character >= 0x1FB00 && character <= 0x1FBFF);
}

void trimRight(std::string& text) {
    text.erase(text.find_last_not_of(' ') + 1);
}

void trimLeft(std::string& text) {
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
}

/// With blanks in the place of decoration; none where a row begins with it.
std::string undecorated(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool isIndent = true;
    bool isMargin = false;
    const auto add = [&](char32_t character) {
        const bool isBlank = character == ' ' || isDecoration(character);
        isIndent = isIndent && isBlank;
        if (isIndent && character != ' ') {
            isMargin = true;
            result.clear();
        }
        if (!isIndent || !isMargin) appendUtf8(isBlank ? U' ' : character, result);
    };
    Utf8Decoder decoder;
    decoder.decode(text, add);
    decoder.finish(add);
    return result;
}

/// Up to the cursor at least, which nothing follows; nothing when something does.
std::optional<std::string> textUpTo(int column, const RowView& row, const ClusterTable& clusters) {
    if (!withoutDecoration(row.translateToString(clusters, {.startCol = column, .skipsNullCellsFollowingWide = true}))
             .empty())
        return std::nullopt;
    return undecorated(row.translateToString(clusters, {.endCol = column, .skipsNullCellsFollowingWide = true}));
}

std::string textOf(const RowView& row, const ClusterTable& clusters) {
    return withoutDecoration(
        row.translateToString(clusters, {.trimsRight = true, .skipsNullCellsFollowingWide = true}));
}

/// Rows one after the other, wrapped ones behind those that they continue.
class Rows {
 public:
    Rows(const Terminal& terminal, PlainScreen& screen) : terminal_(terminal), screen_(screen) {}

    void add(const RowView& row, std::int64_t number, bool hasCursor) {
        const ClusterTable& clusters = terminal_.clusters();
        const auto upToCursor =
            hasCursor ? textUpTo(terminal_.getCursorLocation().x, row, clusters) : std::optional<std::string>();
        std::string text = upToCursor ? *upToCursor : textOf(row, clusters);
        if (row.isWrapped && !screen_.rows.empty()) {
            std::string& line = screen_.rows.back().text;
            line += std::string(blanksAtEnd_, ' ') + text;
        } else {
            const auto place = static_cast<std::int64_t>(screen_.rows.size());
            screen_.rows.push_back({.number = screen_.isNumbered ? number : place, .text = text});
        }
        if (upToCursor) screen_.cursorRow = screen_.rows.size() - 1;
        const auto cols = static_cast<std::size_t>(row.cols);
        blanksAtEnd_ = cols - std::min(cols, Text::displayWidth(text));
    }

 private:
    const Terminal& terminal_;
    PlainScreen& screen_;
    std::size_t blanksAtEnd_ = 0;  ///< of the row before
};

bool isInverse(const StoredCell& cell) {
    return (cell.unpack().attribute.style & Attribute::CharacterStyle::inverse) != Attribute::CharacterStyle::none;
}

std::string characterOf(const StoredCell& cell, const ClusterTable& clusters) {
    return cell.isEmpty() ? " " : clusters.text(cell.code());
}

PlainRow rowOf(const Canvas& canvas, int y, const CellRect& area) {
    std::string text;
    std::string marked;
    bool wasInverse = false;
    bool hasMark = false;
    std::size_t sizeToCursor = 0;
    for (int x = area.x; x < area.right(); ++x) {
        const StoredCell& cell = canvas.row(y)[static_cast<std::size_t>(x)];
        if (canvas.cursor && canvas.cursor->x == x && canvas.cursor->y == y) sizeToCursor = text.size();
        if (cell.isRightHalf()) continue;
        if (isInverse(cell) && !wasInverse) marked += "> ";
        wasInverse = isInverse(cell);
        hasMark = hasMark || wasInverse;
        const std::string character = characterOf(cell, canvas.clusters());
        text += character;
        marked += character;
    }
    PlainRow row{.number = y - area.y, .text = withoutDecoration(text)};
    if (hasMark) row.marked = withoutDecoration(marked);
    const std::string toCursor = undecorated(std::string_view(text).substr(0, sizeToCursor));
    if (toCursor.size() > row.text.size()) row.text = toCursor;
    return row;
}

}  // namespace

std::string withoutDecoration(std::string_view text) {
    std::string result = undecorated(text);
    trimRight(result);
    return result;
}

PlainScreen PlainScreen::of(const Terminal& terminal, std::optional<std::int64_t> from) {
    PlainScreen screen;
    Rows rows(terminal, screen);
    const Buffer& buffer = terminal.buffer();
    const bool isAtNewest = terminal.getTopVisibleRow() >= buffer.yBase();
    const auto cursorRow = isAtNewest && !terminal.modes().cursorHidden ? terminal.getCursorLocation().y : -1;
    screen.isNumbered = isAtNewest && !terminal.isAlternateBufferActive();
    const auto oldest = static_cast<std::int64_t>(buffer.linesTop());
    const std::int64_t top = oldest + buffer.yBase();
    screen.top = screen.isNumbered ? top : 0;
    if (screen.isNumbered && from && *from < top) {
        const std::int64_t first = std::max({*from, oldest, top - mostScrolled});
        screen.lost = first - *from;
        for (std::int64_t number = first; number < top; ++number)
            rows.add(buffer.row(static_cast<int>(number - oldest)), number, false);
    }
    for (int y = 0; y < terminal.rows(); ++y)
        rows.add(terminal.getLine(y), top + y, y == cursorRow);
    return screen;
}

PlainScreen PlainScreen::of(const Canvas& canvas, const CellRect& area) {
    PlainScreen screen;
    const CellRect clip = area.intersection({0, 0, canvas.cols(), canvas.rows()});
    for (int y = clip.y; y < clip.bottom(); ++y) {
        PlainRow row = rowOf(canvas, y, clip);
        trimLeft(row.text);
        trimLeft(row.marked);
        if (canvas.cursor && canvas.cursor->y == y) screen.cursorRow = screen.rows.size();
        screen.rows.push_back(std::move(row));
    }
    return screen;
}

}  // namespace orvane
