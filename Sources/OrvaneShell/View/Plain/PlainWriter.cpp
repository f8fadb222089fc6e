#include "OrvaneShell/View/Plain/PlainWriter.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <utility>

#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

/// Of no row.
constexpr std::int64_t nowhere = -1;
/// Where somebody types into a dialog, which has one such row.
constexpr std::int64_t dialogRow = -2;

/// Long gaps, which only align.
std::string squeezed(std::string_view text) {
    constexpr std::size_t widestGap = 2;
    std::string result;
    std::size_t gap = 0;
    bool isIndent = true;
    for (const char byte : text) {
        gap = byte == ' ' ? gap + 1 : 0;
        isIndent = isIndent && byte == ' ';
        if (gap <= widestGap || isIndent) result += byte;
    }
    return result;
}

/// What a row says apart from numbers and signs: its letters. A spinner or a clock leaves them as they are.
std::string lettersOf(std::string_view text) {
    std::string letters;
    const auto add = [&](char32_t character) {
        const bool isAscii = character < 0x80;
        const bool isSign = isAscii
                                ? std::isalpha(static_cast<int>(character)) == 0
                                : character < 0xAA || character == 0xB7 || (character >= 0x2000 && character < 0x2C00);
        if (!isSign) appendUtf8(character, letters);
    };
    Utf8Decoder decoder;
    decoder.decode(text, add);
    decoder.finish(add);
    return letters;
}

/// The same row, in which something turns, counts or fills. That it is full is news.
bool isTicking(std::string_view before, std::string_view now) {
    const std::string letters = lettersOf(now);
    if (letters != lettersOf(before)) return false;
    constexpr std::string_view full = "100%";
    if (now.contains(full) && !before.contains(full)) return false;
    const auto isForeign = [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; };
    return !letters.empty() || now.contains('%') || std::ranges::any_of(now, isForeign);
}

/// By how many rows the contents moved up, when rows have no numbers: the way that most rows have gone.
std::int64_t commonShift(const PlainScreen& before, const PlainScreen& next) {
    const auto rows = static_cast<std::int64_t>(next.rows.size());
    const auto known = static_cast<std::int64_t>(before.rows.size());
    std::int64_t best = 0;
    int bestCount = 0;
    for (std::int64_t step = 0; step < 2 * std::max(rows, known); ++step) {
        const std::int64_t shift = step % 2 == 0 ? step / 2 : -(step + 1) / 2;
        int count = 0;
        for (std::int64_t row = std::max<std::int64_t>(0, -shift); row < rows && row + shift < known; ++row) {
            const std::string& text = next.rows[static_cast<std::size_t>(row)].text;
            count += !text.empty() && text == before.rows[static_cast<std::size_t>(row + shift)].text ? 1 : 0;
        }
        if (count <= bestCount) continue;
        best = shift;
        bestCount = count;
    }
    return best;
}

/// With the places of rows as their numbers.
PlainScreen placed(PlainScreen screen) {
    for (std::size_t row = 0; row < screen.rows.size(); ++row)
        screen.rows[row].number = static_cast<std::int64_t>(row);
    return screen;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

void PlainWriter::endLine() {
    if (std::exchange(isOpen_, false)) bytes_ += "\r\n";
    openRow_ = nowhere;
}

void PlainWriter::line(std::string_view text) {
    if (isBlank(text)) return;
    endLine();
    bytes_ += squeezed(text);
    bytes_ += "\r\n";
}

void PlainWriter::write(const PlainRow& row, Line end) {
    if (isBlank(row.text)) return;
    endLine();
    bytes_ += squeezed(row.text);
    isOpen_ = true;
    if (end == Line::ends) return endLine();
    openRow_ = row.number;
}

/// What a row has more than the bytes that are known.
void PlainWriter::add(const PlainRow& row, std::size_t known) {
    if (openRow_ != row.number) endLine();
    bytes_ += squeezed(std::string_view(row.text).substr(known));
    isOpen_ = true;
    openRow_ = row.number;
}

std::optional<std::int64_t> PlainWriter::firstNumber() const {
    if (!screen_.isNumbered || screen_.rows.empty()) return std::nullopt;
    return screen_.rows.front().number;
}

/// The rows of the history that came with a screen are told once. A line that reaches into the screen stays whole.
void PlainWriter::keep(const PlainScreen& next) {
    screen_ = next;
    const auto isAbove = [&](const PlainRow& row) { return row.number <= next.top; };
    const auto above = std::ranges::count_if(screen_.rows, isAbove);
    if (screen_.isNumbered && above > 1) screen_.rows.erase(screen_.rows.begin(), screen_.rows.begin() + above - 1);
    screen_.cursorRow.reset();
}

void PlainWriter::screen(const PlainScreen& next) {
    const bool isCounted = next.isNumbered && screen_.isNumbered && next.top >= screen_.top;
    if (isCounted) {
        compare(next, 0);
    } else if (!next.isNumbered && !screen_.isNumbered) {
        const std::int64_t shift = commonShift(screen_, next);
        openRow_ = openRow_ < shift ? nowhere : openRow_ - shift;
        compare(next, shift);
    } else {
        openRow_ = nowhere;
        const PlainScreen after = placed(next);
        screen_ = placed(std::move(screen_));
        compare(after, commonShift(screen_, after));
        if (next.isNumbered) openRow_ = nowhere;
    }
    keep(next);
}

/// Row `n` of the next screen was row `n + shift`.
void PlainWriter::compare(const PlainScreen& next, std::int64_t shift) {
    std::map<std::int64_t, std::string_view> before;
    Texts moved;  // rows that have only moved some other way, as those below a box that grows
    for (const PlainRow& row : screen_.rows) {
        before[row.number] = row.text;
        ++moved[row.text];
    }
    const auto textBefore = [&](const PlainRow& row) {
        const auto found = before.find(row.number + shift);
        return found == before.end() ? std::string_view() : found->second;
    };
    for (const PlainRow& row : next.rows)
        if (textBefore(row) == row.text) --moved[row.text];
    for (std::size_t i = 0; i < next.rows.size(); ++i) {
        const PlainRow& row = next.rows[i];
        if (next.cursorRow != i) writeNews(row, textBefore(row), moved);
    }
    // Last, so that the next letter can stand behind it.
    if (next.cursorRow) writeTyped(next.rows[*next.cursorRow], textBefore(next.rows[*next.cursorRow]));
}

void PlainWriter::writeNews(const PlainRow& row, std::string_view before, Texts& moved) {
    if (before == row.text || isBlank(row.text)) return;
    if (!isBlank(before) && row.text.starts_with(before)) return add(row, before.size());
    if (!isBlank(before) && isTicking(before, row.text)) return;
    const auto found = moved.find(row.text);
    if (found == moved.end() || found->second <= 0) return write(row, Line::ends);
    --found->second;
}

void PlainWriter::writeTyped(const PlainRow& row, std::string_view before) {
    if (before == row.text) return;
    if (!isBlank(before) && row.text.starts_with(before)) return add(row, before.size());
    // Of what somebody erases, the rest is told.
    const bool isErased = before.starts_with(row.text);
    if (isErased || isBlank(before) || !isTicking(before, row.text)) write(row, Line::staysOpen);
}

void PlainWriter::newScreen(const PlainScreen& next) {
    endLine();
    if (next.cursorRow) write(next.rows[*next.cursorRow], Line::staysOpen);
    keep(next);
}

void PlainWriter::wholeScreen(const PlainScreen& next) {
    endLine();
    for (std::size_t i = 0; i < next.rows.size(); ++i)
        write(next.rows[i], next.cursorRow == i ? Line::staysOpen : Line::ends);
    keep(next);
}

void PlainWriter::dialog(const PlainScreen& next) {
    const bool isNew = dialog_.rows.empty();
    Texts known;
    for (const PlainRow& row : dialog_.rows)
        ++known[row.text];
    for (std::size_t i = 0; i < next.rows.size(); ++i) {
        const PlainRow& row = next.rows[i];
        const std::string_view before = i < dialog_.rows.size() ? std::string_view(dialog_.rows[i].text) : "";
        const auto found = known.find(row.text);
        const bool isKnown = found != known.end() && found->second-- > 0;
        if (!isNew && next.cursorRow == i) {
            writeTyped({.number = dialogRow, .text = row.text}, before);
        } else if (!isKnown || (!isNew && isNewChoice(row))) {
            line(row.marked.empty() ? row.text : row.marked);
        }
    }
    dialog_ = next;
}

/// Whether the choice was elsewhere.
bool PlainWriter::isNewChoice(const PlainRow& row) const {
    return !row.marked.empty() && std::ranges::find(dialog_.rows, row.marked, &PlainRow::marked) == dialog_.rows.end();
}

}  // namespace orvane
