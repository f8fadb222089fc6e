#include "TerminalEmulator/Selection/TextMotion.h"

#include <algorithm>
#include <limits>

#include "TerminalEmulator/CharacterClass.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {
namespace {

constexpr int allRows = std::numeric_limits<int>::max();

}  // namespace

Position TextMotion::left(Position at) const {
    const auto step = before(at);
    return step ? step->at : at;
}

Position TextMotion::right(Position at) const {
    const auto step = after(at);
    return step ? step->at : at;
}

Position TextMotion::wordForward(Position at, Words words) const {
    Position lastText = at;
    Kind kind = kindAt(at, words);
    for (auto step = after(at); step; step = after(step->at)) {
        if (step->isOtherLine) kind = Kind::blank;
        const Kind here = kindAt(step->at, words);
        if (here != Kind::blank && here != kind) return step->at;
        if (here != Kind::blank) lastText = step->at;
        kind = here;
    }
    return lastText;
}

Position TextMotion::wordEnd(Position at, Words words) const {
    auto step = after(at);
    while (step && kindAt(step->at, words) == Kind::blank)
        step = after(step->at);
    if (!step) return at;
    Position end = step->at;
    const Kind kind = kindAt(end, words);
    for (step = after(end); step && !step->isOtherLine && kindAt(step->at, words) == kind; step = after(end))
        end = step->at;
    return end;
}

Position TextMotion::wordBack(Position at, Words words) const {
    auto step = before(at);
    while (step && kindAt(step->at, words) == Kind::blank)
        step = before(step->at);
    if (!step) return {};
    Position start = step->at;
    const Kind kind = kindAt(start, words);
    // The step that leaves a line to the one above is told by `before` of the cell that it leaves.
    for (step = before(start); step && !step->isOtherLine && kindAt(step->at, words) == kind; step = before(start))
        start = step->at;
    return start;
}

std::string TextMotion::nameAt(Position at) const {
    std::optional<Step> step = Step{.at = at};
    while (step && !step->isOtherLine && kindAt(step->at, Words::plain) != Kind::name)
        step = after(step->at);
    if (!step || step->isOtherLine) return {};
    Position start = step->at;
    const auto isName = [&](const std::optional<Step>& next) {
        return next && !next->isOtherLine && kindAt(next->at, Words::plain) == Kind::name;
    };
    for (step = before(start); isName(step); step = before(start))
        start = step->at;
    std::string name;
    for (step = Step{.at = start}; isName(step); step = after(step->at))
        LogicalLine::appendCell(buffer_.row(step->at.row).at(step->at.col), clusters_, name);
    return name;
}

Position TextMotion::lineStart(Position at) const {
    return {LogicalLine::firstRow(buffer_, at.row, allRows), 0};
}

Position TextMotion::lineText(Position at) const {
    const Position start = lineStart(at);
    Position text = start;
    while (kindAt(text, Words::betweenBlanks) == Kind::blank) {
        const auto step = after(text);
        if (!step || step->isOtherLine) return start;
        text = step->at;
    }
    return text;
}

Position TextMotion::lineEnd(Position at) const {
    const int row = LogicalLine::lastRow(buffer_, at.row, allRows);
    return {row, lastCol(row)};
}

Position TextMotion::paragraphUp(Position at) const {
    int row = std::max(0, at.row - 1);
    while (row > 0 && isBlank(row))
        --row;
    while (row > 0 && !isBlank(row))
        --row;
    return {row, 0};
}

Position TextMotion::paragraphDown(Position at) const {
    const int last = std::max(at.row, lastTextRow());
    int row = at.row;
    while (row < last && isBlank(row))
        ++row;
    while (row < last && !isBlank(row))
        ++row;
    return {row, 0};
}

std::optional<Position> TextMotion::promptAbove(Position at) const {
    for (int row = at.row - 1; row >= 0; --row) {
        if (buffer_.row(row).startsPrompt) return Position{row, 0};
    }
    return std::nullopt;
}

std::optional<Position> TextMotion::promptBelow(Position at) const {
    for (int row = at.row + 1; row < buffer_.count(); ++row) {
        if (buffer_.row(row).startsPrompt) return Position{row, 0};
    }
    return std::nullopt;
}

int TextMotion::lastCol(int row) const {
    const int last = std::max(0, LogicalLine::textCols(buffer_, row) - 1);
    return LogicalLine::characterCol(buffer_.row(row), last);
}

int TextMotion::lastTextRow() const {
    int row = std::max(0, buffer_.count() - 1);
    while (row > 0 && isBlank(row))
        --row;
    return row;
}

TextMotion::Kind TextMotion::kindAt(Position at, Words words) const {
    switch (characterClass(clusters_.baseScalar(buffer_.row(at.row).at(at.col).code()))) {
        case CharacterClass::blank:
            return Kind::blank;
        case CharacterClass::letter:
            return Kind::name;
        case CharacterClass::pathMark:
        case CharacterClass::punctuation:
            break;
    }
    return words == Words::plain ? Kind::sign : Kind::name;
}

std::optional<TextMotion::Step> TextMotion::after(Position at) const {
    const LogicalLine::Below below = LogicalLine::below(buffer_, at.row);
    const RowView row = buffer_.row(at.row);
    const int behind = LogicalLine::colBehindCharacter(row, at.col);
    if (behind < LogicalLine::textCols(row, below)) return Step{.at = {at.row, behind}};
    if (at.row + 1 >= buffer_.count()) return std::nullopt;
    return Step{.at = {at.row + 1, 0}, .isOtherLine = below == LogicalLine::Below::startsLine};
}

std::optional<TextMotion::Step> TextMotion::before(Position at) const {
    if (at.col > 0) {
        const int col = std::min(at.col - 1, lastCol(at.row));
        return Step{.at = {at.row, LogicalLine::characterCol(buffer_.row(at.row), col)}};
    }
    if (at.row == 0) return std::nullopt;
    const bool isOtherLine = !buffer_.row(at.row).isWrapped;
    return Step{.at = {at.row - 1, lastCol(at.row - 1)}, .isOtherLine = isOtherLine};
}

bool TextMotion::isBlank(int row) const {
    return LogicalLine::textColsWithoutBlanks(buffer_, row) == 0;
}

}  // namespace orvane
