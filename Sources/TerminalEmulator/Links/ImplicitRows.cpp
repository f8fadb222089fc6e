#include "TerminalEmulator/Links/ImplicitRows.h"

#include <algorithm>

#include "TerminalEmulator/CharacterClass.h"
#include "TerminalEmulator/Links/UrlScan.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {
namespace {

constexpr std::u32string_view sentenceMarks = U".,:;!?";
constexpr std::u32string_view marksNeverBroken = U",;!?'*";  // at the end of a row they end the address

bool isDigit(char32_t scalar) {
    return scalar >= U'0' && scalar <= U'9';
}

bool isBlank(char32_t scalar) {
    return characterClass(scalar) == CharacterClass::blank;
}

/// How many characters a list's mark and the blanks behind it take: "- ", "● ", "1. ", "12) "; 0 without one.
std::size_t markLength(std::u32string_view text) {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length]))
        ++length;
    const bool isNumbered =
        length > 0 && length <= 3 && length < text.size() && (text[length] == U'.' || text[length] == U')');
    const bool isSign = length == 0 && !text.empty() && characterClass(text[0]) != CharacterClass::letter;
    if (!isNumbered && !isSign) return 0;
    if (++length == text.size() || !isBlank(text[length])) return 0;
    while (length < text.size() && isBlank(text[length]))
        ++length;
    return length == text.size() ? 0 : length;
}

/// A word such as "Then", as sentences begin.
bool isCapitalized(std::u32string_view word) {
    return word.front() >= U'A' && word.front() <= U'Z' && word.size() > 1 &&
           std::ranges::all_of(word.substr(1), [](char32_t scalar) { return scalar >= U'a' && scalar <= U'z'; });
}

/// Two plain words with a stroke between them: "and/or".
bool isAlternative(std::u32string_view word) {
    const std::size_t stroke = word.find(U'/');
    if (stroke == 0 || stroke + 1 >= word.size()) return false;
    return std::ranges::count_if(word, [](char32_t scalar) {
               return characterClass(scalar) != CharacterClass::letter || isDigit(scalar) || scalar == U'_';
           }) == 1;
}

/// Whether a run can be the rest of an address although words follow it in its row.
bool isRestBeforeWords(std::u32string_view run) {
    if (run.find_first_of(U"/?&=%#_~@+") != std::u32string_view::npos) return !isAlternative(run);
    const auto digits = static_cast<std::size_t>(std::ranges::count_if(run, isDigit));
    const bool hasLetter = std::ranges::any_of(
        run, [](char32_t scalar) { return !isDigit(scalar) && characterClass(scalar) == CharacterClass::letter; });
    return digits > 0 && hasLetter;
}

/// The same for one that stands alone.
bool isRestAlone(std::u32string_view run, bool isUpperFull) {
    const bool isPlainWord = std::ranges::all_of(run, [](char32_t scalar) {
        return !isDigit(scalar) && scalar != U'_' && characterClass(scalar) == CharacterClass::letter;
    });
    return !isPlainWord || (isUpperFull && !isCapitalized(run));
}

}  // namespace

ImplicitRows::ImplicitRows(const Buffer& buffer, const ClusterTable& clusters, Position at)
    : buffer_(buffer), clusters_(clusters), at_(at), box_(boxAround(at)) {}

ImplicitRows::Group ImplicitRows::heuristicImplicitGroup() const {
    Group group{at_.row, at_.row};
    while (at_.row - group.first < maximumRows && isImplicitContinuationRow(group.first))
        --group.first;
    while (group.last - at_.row < maximumRows && isImplicitContinuationRow(group.last + 1))
        ++group.last;
    return group;
}

ColumnRange ImplicitRows::textCols(int row, const Group& group) const {
    const Shape shape = shapeOf(row);
    ColumnRange cols{box_.startCol, shape.end};
    if (row > group.first && !isWrapJoined(row - 1)) cols.startCol = shape.start;
    if (row < group.last && isWrapJoined(row)) cols.endCol = LogicalLine::textCols(buffer_, row);
    return cols;
}

bool ImplicitRows::isWrapJoined(int upper) const {
    return !hasBox() && LogicalLine::continuesBelow(buffer_, upper);
}

bool ImplicitRows::canJoinImplicitRows(int upper) const {
    if (upper < 0 || upper + 1 >= buffer_.count() || isWrapJoined(upper)) return false;
    if (boxAround({upper, at_.col}) != box_ || boxAround({upper + 1, at_.col}) != box_) return false;
    const Shape above = shapeOf(upper);
    const Shape below = shapeOf(upper + 1);
    const std::u32string run = above.lastRun();
    if (run.empty() || marksNeverBroken.contains(run.back()) || !isFilled(above)) return false;
    if (below.hasMark || below.start != above.start) return false;
    const int gap = box_.endCol - above.end;
    return mayBeRest(below, gap <= std::min(2, above.start - box_.startCol));
}

bool ImplicitRows::isImplicitContinuationRow(int row) const {
    return row > 0 && (isWrapJoined(row - 1) || canJoinImplicitRows(row - 1));
}

/// The columns between the nearest sides of boxes to the left and right of a cell. What the terminal has wrapped runs
/// over whole rows, whatever is drawn in it.
ColumnRange ImplicitRows::boxAround(Position at) const {
    if (buffer_.row(at.row).isWrapped || LogicalLine::continuesBelow(buffer_, at.row)) return {0, buffer_.cols()};
    ColumnRange box{at.col, at.col};
    while (box.startCol > 0 && !isFrameCharacter(scalarAt({at.row, box.startCol - 1})))
        --box.startCol;
    while (box.endCol < buffer_.cols() && !isFrameCharacter(scalarAt({at.row, box.endCol})))
        ++box.endCol;
    return box;
}

char32_t ImplicitRows::scalarAt(Position at) const {
    const RowView row = buffer_.row(at.row);
    return clusters_.baseScalar(row.at(LogicalLine::characterCol(row, at.col)).code());
}

ImplicitRows::Shape ImplicitRows::shapeOf(int row) const {
    Shape shape{.start = box_.startCol, .end = box_.endCol};
    for (int col = 0; col < buffer_.cols(); ++col)
        shape.text += scalarAt({row, col});
    while (shape.end > shape.start && isBlank(shape.at(shape.end - 1)))
        --shape.end;
    while (shape.start < shape.end && isBlank(shape.at(shape.start)))
        ++shape.start;
    const std::u32string_view content = shape.text;
    const std::size_t mark = markLength(
        content.substr(static_cast<std::size_t>(shape.start), static_cast<std::size_t>(shape.end - shape.start)));
    shape.start += static_cast<int>(mark);
    shape.hasMark = mark > 0;
    return shape;
}

/// Programs leave as much room on the right as on the left, or a cell or two.
bool ImplicitRows::isFilled(const Shape& shape) const {
    const int room = std::clamp(shape.start - box_.startCol, 2, 4);
    return shape.start < shape.end && shape.end >= box_.endCol - room;
}

bool ImplicitRows::mayBeRest(const Shape& lower, bool isUpperFull) {
    const std::u32string whole = lower.firstRun();
    std::u32string_view run = whole;
    const bool isAlone = static_cast<int>(run.size()) == lower.end - lower.start;
    while (!run.empty() && sentenceMarks.contains(run.back()))
        run.remove_suffix(1);
    if (run.empty() || run.starts_with(U"www.") || UrlScan::startsAddress(run)) return false;
    return isAlone ? isRestAlone(run, isUpperFull) : isRestBeforeWords(run);
}

char32_t ImplicitRows::Shape::at(int col) const {
    return text[static_cast<std::size_t>(col)];
}

std::u32string ImplicitRows::Shape::lastRun() const {
    int from = end;
    while (from > start && UrlScan::isUrlCharacter(at(from - 1)))
        --from;
    return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(end - from));
}

std::u32string ImplicitRows::Shape::firstRun() const {
    int to = start;
    while (to < end && UrlScan::isUrlCharacter(at(to)))
        ++to;
    return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(to - start));
}

}  // namespace orvane
