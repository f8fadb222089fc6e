#include "OrvaneCore/Agents/Signals/AgentRow.h"

#include <algorithm>

#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

using Glyphs::isOneOf;

constexpr int columnsKeptFree = 3;  ///< agents keep up to so many free at the right edge

bool isBorder(std::string_view glyph) {
    return isOneOf(glyph, {"│", "┃", "║", "╎", "┆", "┊", "▌"});
}

bool isDash(std::string_view glyph) {
    return isOneOf(glyph, {"╌", "╍", "┄", "┅", "┈", "┉"});
}

bool isLinePiece(std::string_view glyph) {
    return isOneOf(glyph, {"─", "━", "═", "▔", "▁", "▀", "▄", "╭", "╮", "╰", "╯", "┌", "┐", "└",
                           "┘", "┏", "┓", "┗", "┛", "╔", "╗", "╚", "╝", "├", "┤", "╞", "╡"}) ||
           isDash(glyph);
}

bool isWide(std::string_view glyph) {
    return Text::displayWidth(glyph) > 1;
}

/// Well-formed, of one line, with plain blanks.
std::string plain(std::string_view row) {
    std::string text = Text::sanitizedUtf8(row.substr(0, AgentRowText::maximumRowSize));
    for (const std::string_view blank : {"\u00A0", "\u202F", "\u2007"}) {
        for (std::size_t at = text.find(blank); at != std::string::npos; at = text.find(blank, at))
            text.replace(at, blank.size(), " ");
    }
    std::ranges::replace_if(text, [](unsigned char byte) { return byte < ' '; }, ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

bool isPlainPiece(std::string_view glyph) {
    return isOneOf(glyph, {"─", "━", "═", "▔", "▁", "▀", "▄"}) || isDash(glyph);
}

AgentRow::Kind kindOf(std::string_view content, int columns) {
    if (content.empty()) return AgentRow::Kind::blank;
    const std::string_view firstGlyph = Glyphs::first(content);
    if (!isLinePiece(firstGlyph)) return AgentRow::Kind::text;
    int pieces = 0;
    int others = 0;
    bool isDashed = false;
    for (std::string_view rest = content; !rest.empty(); rest.remove_prefix(Glyphs::first(rest).size())) {
        const std::string_view glyph = Glyphs::first(rest);
        isDashed |= isDash(glyph);
        (isLinePiece(glyph) ? pieces : others) += 1;
    }
    if (pieces < 3 || pieces < others) return AgentRow::Kind::text;
    // Lines in tables that an agent printed are short ones.
    if (isPlainPiece(firstGlyph) && pieces + others < columns / 2) return AgentRow::Kind::text;
    return isDashed ? AgentRow::Kind::dashes : AgentRow::Kind::rule;
}

/// Puts blanks in the place of borders.
void openBoxes(AgentRow& row) {
    std::string_view rest = row.text;
    std::size_t at = Glyphs::dropBlanks(rest);
    while (isBorder(Glyphs::first(rest))) {
        row.text.replace(at, Glyphs::first(rest).size(), " ");
        ++row.boxes;
        rest = std::string_view(row.text).substr(++at);
        at += Glyphs::dropBlanks(rest);
    }
    for (int box = 0; box < row.boxes && isBorder(Glyphs::last(row.text)); ++box) {
        row.text.erase(row.text.size() - Glyphs::last(row.text).size());
        row.wrapsAt = static_cast<int>(Text::displayWidth(row.text)) - 1 + columnsKeptFree;
        row.text.erase(row.text.find_last_not_of(' ') + 1);
    }
}

AgentRow rowOf(std::string_view text, int columns) {
    AgentRow row{.text = plain(text), .wrapsAt = columns};
    openBoxes(row);
    std::string_view content = row.text;
    row.indent = static_cast<int>(Glyphs::dropBlanks(content));
    row.width = static_cast<int>(Text::displayWidth(row.text));
    row.kind = kindOf(content, columns);
    return row;
}

/// The columns of what a line is never broken within.
int firstWordWidth(std::string_view text) {
    if (isWide(Glyphs::first(text))) return 2;
    std::size_t end = 0;
    while (end < text.size() && text[end] != ' ' && !isWide(Glyphs::first(text.substr(end))))
        end += Glyphs::first(text.substr(end)).size();
    return static_cast<int>(Text::displayWidth(text.substr(0, end)));
}

/// The screen is as wide as the lines across it; without one, as usual.
int guessedColumns(std::span<const std::string> rows) {
    constexpr std::size_t usualColumns = 80;
    std::size_t lines = 0;
    std::size_t texts = usualColumns;
    for (const std::string& row : rows) {
        const std::string text = plain(row);
        std::string_view content = text;
        Glyphs::dropBlanks(content);
        std::size_t& widest = kindOf(content, 0) == AgentRow::Kind::rule ? lines : texts;
        widest = std::max(widest, Text::displayWidth(text));
    }
    return static_cast<int>(lines > 0 ? lines : texts);
}

}  // namespace

std::string_view AgentRow::content() const {
    return std::string_view(text).substr(static_cast<std::size_t>(indent));
}

std::vector<AgentRow> AgentRowText::reading(std::span<const std::string> rows, int columns) {
    if (columns <= 0) columns = guessedColumns(rows);
    std::vector<AgentRow> result;
    result.reserve(rows.size());
    for (const std::string& row : rows)
        result.push_back(rowOf(row, columns));
    return result;
}

bool AgentRowText::continues(const AgentRow& above, const AgentRow& below) {
    if (!above.isText() || !below.isText() || above.boxes != below.boxes || above.wrapsAt != below.wrapsAt)
        return false;
    const std::string_view next = below.content();
    const bool hasBlank = !isWide(Glyphs::first(next));
    return above.width + (hasBlank ? 1 : 0) + firstWordWidth(next) > above.wrapsAt - columnsKeptFree;
}

void AgentRowText::append(std::string& text, std::string_view more) {
    const bool hasBlank = !text.empty() && !(isWide(Glyphs::last(text)) && isWide(Glyphs::first(more)));
    if (hasBlank) text += ' ';
    text += more;
}

bool AgentRowText::startsMessage(const AgentRow& row) {
    if (!row.isText() || row.indent != 0 || row.boxes != 0) return false;
    std::string_view rest = row.text;
    const std::string_view mark = Glyphs::first(rest);
    rest.remove_prefix(mark.size());
    return (rest.empty() || rest.starts_with(' ')) &&
           isOneOf(mark, {"●", "⏺", "•", "■", "✔", "✓", "✗", "✘", "✦", "ℹ", "✕", "⚠", "❯", "›", ">", "»", "⎿"});
}

bool AgentRowText::startsPrompt(const AgentRow& row) {
    if (!row.isText()) return false;
    const std::string_view content = row.content();
    const std::string_view mark = Glyphs::first(content);
    return isOneOf(mark, {">", "❯", "›", "»"}) && (content.size() == mark.size() || content[mark.size()] == ' ');
}

}  // namespace orvane
