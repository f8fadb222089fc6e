#include "OrvaneCore/Agents/Signals/TerminalComposer.h"

#include <algorithm>
#include <array>
#include <string>

#include "OrvaneCore/Agents/Signals/AgentRow.h"
#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::TerminalComposer {

namespace {

/// What agents write into an empty composer; also drawn in a colour of its own instead of faint.
constexpr std::array<std::string_view, 8> placeholders = {
    "Ask Codex to do anything",
    "Type your message",
    "Type your shell command",
    "Press up to edit queued messages",
    "Resend your message to try again",
    "Once fixed, resend your message",
    "Try \"",
    "Message Claude",
};

bool isMarker(std::string_view glyph) {
    return Glyphs::isOneOf(glyph, {">", "❯", "›", "»"});
}

bool isModeMarker(std::string_view glyph) {
    return isMarker(glyph) || Glyphs::isOneOf(glyph, {"!", "#", "*"});
}

bool isBorder(std::string_view glyph) {
    return Glyphs::isOneOf(glyph, {"│", "┃", "|", "║", "╎", "┆", "▌"});
}

/// A blank as agents put it: a space, or the no-break space behind Claude Code's marker.
void dropBlanks(std::string_view& text, std::size_t most = std::string_view::npos) {
    constexpr std::string_view noBreakSpace = "\u00A0";
    for (; most > 0; --most) {
        if (text.starts_with(' ')) {
            text.remove_prefix(1);
        } else if (text.starts_with(noBreakSpace)) {
            text.remove_prefix(noBreakSpace.size());
        } else {
            return;
        }
    }
}

bool startsBlank(std::string_view text) {
    std::string_view rest = text;
    dropBlanks(rest, 1);
    return text.empty() || rest.size() != text.size();
}

bool dropFirst(std::string_view& text, bool (*is)(std::string_view)) {
    const std::string_view glyph = Glyphs::first(text);
    if (!is(glyph)) return false;
    text.remove_prefix(glyph.size());
    return true;
}

/// A border at the right edge, when the row began with one.
std::optional<int> dropRightBorder(std::string_view& text) {
    std::string_view rest = text;
    Glyphs::dropBlanksAtEnd(rest);
    if (!isBorder(Glyphs::last(rest))) return std::nullopt;
    text = rest.substr(0, rest.size() - Glyphs::last(rest).size());
    return static_cast<int>(Text::displayWidth(text));
}

Cell cellOf(std::string_view text, bool hasBorder) {
    const auto width = hasBorder ? dropRightBorder(text) : std::nullopt;
    Glyphs::dropBlanksAtEnd(text);
    return {.text = std::string(text), .width = width, .filled = static_cast<int>(Text::displayWidth(text))};
}

/// Border, marker, blank, text, border.
std::optional<Cell> firstCell(std::string_view row, bool (*isItsMarker)(std::string_view)) {
    std::string_view rest = row;
    dropBlanks(rest);
    const bool hasBorder = dropFirst(rest, isBorder);
    dropBlanks(rest);
    if (!dropFirst(rest, isItsMarker) || !startsBlank(rest)) return std::nullopt;
    const std::string_view chrome = row.substr(0, row.size() - rest.size());
    dropBlanks(rest);
    Cell cell = cellOf(rest, hasBorder);
    cell.column = static_cast<int>(Text::displayWidth(chrome)) + 1;
    return cell;
}

/// A row below it, whose text begins below the first row's.
std::optional<Cell> nextCell(std::string_view row, int column) {
    std::string_view rest = row;
    dropBlanks(rest);
    if (rest.empty()) return Cell();
    const auto indent = static_cast<int>(Text::displayWidth(row.substr(0, row.size() - rest.size())));
    const bool hasBorder = dropFirst(rest, isBorder);
    if (!hasBorder && indent < std::min(column, 2)) return std::nullopt;
    if (hasBorder) {
        dropBlanks(rest, static_cast<std::size_t>(std::max(0, column - indent - 1)));
    } else {
        rest = row;
        dropBlanks(rest, static_cast<std::size_t>(column));
    }
    return cellOf(rest, hasBorder);
}

bool isPlaceholder(std::string_view text) {
    return std::ranges::any_of(placeholders, [&](std::string_view each) { return text.starts_with(each); });
}

bool isDim(const std::vector<bool>& dimmed, std::size_t row) {
    return row < dimmed.size() && dimmed[row];
}

bool isLine(const std::string& row) {
    const auto rows = AgentRowText::reading(std::span(&row, 1));
    return rows.front().isLine();
}

bool isBlank(const std::string& row) {
    std::string_view rest = row;
    dropBlanks(rest);
    return rest.empty();
}

/// The row behind the composer's last: the line below it; without one the blank row before what stands last, so that a
/// draft may hold blank rows.
std::size_t endOf(std::span<const std::string> rows, std::size_t first) {
    const auto line = std::find_if(rows.begin() + static_cast<std::ptrdiff_t>(first) + 1, rows.end(), isLine);
    if (line != rows.end()) return static_cast<std::size_t>(line - rows.begin());
    std::size_t end = rows.size();
    while (end > first + 1 && isBlank(rows[end - 1]))
        --end;
    std::size_t blank = end;
    while (blank > first + 1 && !isBlank(rows[blank - 1]))
        --blank;
    return blank > first + 1 ? blank - 1 : end;
}

/// The text of `first`, which is that of the first row, and of the rows below it.
std::string draftFrom(const Cell& first, std::span<const std::string> rows, const std::vector<bool>& dimmed,
                      std::size_t firstDim) {
    const bool isSuggestion = isDim(dimmed, firstDim) || isPlaceholder(first.text);
    std::string text = isSuggestion ? std::string() : first.text;
    for (std::size_t row = 1; row < rows.size() && !isDim(dimmed, firstDim + row); ++row) {
        const auto more = nextCell(rows[row], first.column);
        if (!more) break;
        text += "\n" + more->text;
    }
    text.erase(text.find_last_not_of(" \n") + 1);
    return text;
}

}  // namespace

std::optional<std::string> draft(std::span<const std::string> visibleRows, const std::vector<bool>& dimmed) {
    std::size_t looked = 0;
    for (std::size_t row = visibleRows.size(); row-- > 0 && looked < maximumRows; ++looked) {
        if (const auto first = firstCell(visibleRows[row], isMarker)) {
            return draftFrom(*first, visibleRows.subspan(row, endOf(visibleRows, row) - row), dimmed, row);
        }
    }
    return std::nullopt;
}

std::optional<std::string> draftOf(std::span<const std::string> rows, const std::vector<bool>& dimmed) {
    const auto first = rows.empty() ? std::nullopt : firstCell(rows.front(), isModeMarker);
    if (!first) return std::nullopt;
    return draftFrom(*first, rows, dimmed, 0);
}

bool isChrome(std::string_view character) {
    return Text::trimmed(character).empty() || isMarker(character) || isBorder(character);
}

}  // namespace orvane::TerminalComposer
