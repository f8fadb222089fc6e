#include "TerminalEmulator/Engine/TextPrinter.h"

#include <algorithm>

#include "TerminalEmulator/Parser/TextScan.h"
#include "TerminalEmulator/Unicode/UnicodeUtil.h"

namespace orvane {

namespace {

/// The bytes before the first printable ASCII one.
std::size_t otherLength(std::string_view text) {
    const auto* const end = std::ranges::find_if(text, [](char byte) { return byte >= 0x20 && byte < 0x7F; });
    return static_cast<std::size_t>(end - text.begin());
}

}  // namespace

void TextPrinter::print(std::string_view text, std::size_t plainCount) {
    while (true) {
        if (plainCount > 0 && takesPlain()) {
            printPlain(text.substr(0, plainCount));
            text.remove_prefix(plainCount);
            plainCount = 0;
        }
        if (text.empty()) return;
        const std::size_t length = takesPlain() ? otherLength(text) : text.size();
        printOther(text.substr(0, length));
        text.remove_prefix(length);
        plainCount = TextScan::plainLength(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    }
}

/// Whether printable ASCII goes into the row as it is.
bool TextPrinter::takesPlain() const {
    return !decoder_.isPending() && !afterJoiner_ && state_.charsets.isAscii();
}

void TextPrinter::printOther(std::string_view text) {
    state_.markRow(state_.buffer->y());
    limit_ = rightLimit();
    decoder_.decode(text, [this](char32_t scalar) { printScalar(scalar); });
}

void TextPrinter::replacePending() {
    limit_ = rightLimit();
    decoder_.finish([this](char32_t scalar) { printScalar(scalar); });
}

void TextPrinter::repeat(int count) {
    if (lastScalar_ == 0) return;
    const int width = std::max(UnicodeUtil::columnWidth(lastScalar_), 1);
    count = std::clamp(count, 1, state_.cols() * state_.rows() / width);
    state_.markRow(state_.buffer->y());
    limit_ = rightLimit();
    for (; count > 0; --count)
        place(lastScalar_, width);
}

void TextPrinter::reset() {
    decoder_.reset();
    lastScalar_ = 0;
    afterJoiner_ = false;
}

void TextPrinter::printPlain(std::string_view bytes) {
    lastScalar_ = static_cast<unsigned char>(bytes.back());
    while (true) {
        Buffer& buffer = *state_.buffer;
        if (buffer.isWrapPending && state_.modes.wraparound) state_.wrapLine();
        const int limit = rightLimit();
        const int room = limit + 1 - buffer.x();
        state_.markRow(buffer.y());
        if (!state_.modes.wraparound && static_cast<int>(bytes.size()) > room) {
            // What does not fit overwrites the last column, one after the other; only the last of it stays. So it does
            // under IRM, which has nothing left to shift then.
            const auto fitting = static_cast<std::size_t>(room - 1);
            state_.cursorLine().writeAscii(buffer.x(), bytes.substr(0, fitting), buffer.pen);
            state_.cursorLine().writeAscii(limit, bytes.substr(bytes.size() - 1), buffer.pen);
            advance(limit + 1, limit);
            return;
        }
        if (state_.modes.insertMode) {
            const int count = std::min(static_cast<int>(bytes.size()), room);
            state_.cursorLine().insertCells(buffer.x(), count, limit, buffer.pen.erased());
        }
        const int written = state_.cursorLine().writeAscii(buffer.x(), bytes, buffer.pen, limit + 1);
        advance(buffer.x() + written, limit);
        bytes.remove_prefix(static_cast<std::size_t>(written));
        if (bytes.empty()) return;
    }
}

void TextPrinter::printScalar(char32_t scalar) {
    if (UnicodeUtil::isControl(scalar)) return;
    if (scalar < 0x80) {
        scalar = characterIn(state_.charsets.current(), static_cast<char>(scalar));
        state_.charsets.singleShift.reset();
    }
    const bool mayJoin = afterJoiner_ || UnicodeUtil::joinsPrevious(scalar) || UnicodeUtil::isRegionalIndicator(scalar);
    afterJoiner_ = false;
    if (mayJoin && join(scalar)) return;
    int width = UnicodeUtil::columnWidth(scalar);
    // A mark with nothing to stand on: programs count no column for it.
    if (width == 0) return;
    if (UnicodeUtil::isRegionalIndicator(scalar) &&
        state_.options.regionalIndicatorWidth == RegionalIndicatorWidth::narrow) {
        width = 1;
    }
    lastScalar_ = scalar;
    place(scalar, width);
}

void TextPrinter::place(char32_t scalar, int width) {
    Buffer& buffer = *state_.buffer;
    const bool fits = buffer.x() + width <= limit_ + 1;
    if (state_.modes.wraparound && (buffer.isWrapPending || !fits)) {
        // A row drawn double may have one column only; a wide character never fits there.
        if (!buffer.isWrapPending) state_.cursorLine().replaceCells(buffer.x(), limit_ + 1, buffer.pen.erased());
        unlinkNextRow(limit_);
        state_.wrapLine();
        limit_ = rightLimit();
        state_.markRow(buffer.y());
    }
    const int col = std::max(std::min(buffer.x(), limit_ + 1 - width), 0);
    BufferLine line = state_.cursorLine();
    if (state_.modes.insertMode) line.insertCells(col, width, limit_, buffer.pen.erased());
    line.writeCell(col, static_cast<std::int32_t>(scalar), width, buffer.pen);
    advance(col + width, limit_);
}

/// Adds the scalar to the cluster before the cursor, if there is one that it joins.
bool TextPrinter::join(char32_t scalar) {
    const int col = lastCellColumn();
    if (col < 0) return false;
    BufferLine line = state_.cursorLine();
    const StoredCell cell = line.at(col);
    if (cell.isEmpty() || !joinsCluster(scalar, cell.code())) return false;
    line.setCode(col, state_.clusters.joined(cell.code(), scalar), cell.width());
    afterJoiner_ = scalar == UnicodeUtil::zeroWidthJoiner;
    const bool isSelector = scalar == UnicodeUtil::emojiPresentation || scalar == UnicodeUtil::textPresentation;
    if (isSelector) applyPresentation(scalar, col);
    return true;
}

/// Only a lone regional indicator takes another one; all else that may join does.
bool TextPrinter::joinsCluster(char32_t scalar, std::int32_t code) const {
    if (UnicodeUtil::joinsPrevious(scalar)) return true;
    const char32_t last = state_.clusters.lastScalar(code);
    if (last == UnicodeUtil::zeroWidthJoiner) return true;
    return UnicodeUtil::isRegionalIndicator(scalar) && CharData{.code = code}.isSimpleRune() &&
           UnicodeUtil::isRegionalIndicator(last);
}

/// Selector 16 makes an emoji of a character that is text by default, which takes two columns, and 15 the reverse.
void TextPrinter::applyPresentation(char32_t selector, int col) {
    Buffer& buffer = *state_.buffer;
    BufferLine line = state_.cursorLine();
    const StoredCell cell = line.at(col);
    if (!UnicodeUtil::isVariationBase(state_.clusters.baseScalar(cell.code()))) return;
    if (selector == UnicodeUtil::emojiPresentation && cell.width() == 1 && col + 2 <= limit_ + 1) {
        line.setCode(col, cell.code(), 2);
        advance(col + 2, limit_);
    } else if (selector == UnicodeUtil::textPresentation && cell.isWide()) {
        line.setCode(col, cell.code(), 1);
        line.replaceCells(col + 1, col + 2, buffer.pen.erased());
        advance(col + 1, limit_);
    }
}

/// Of the cell that was printed before the cursor's place, on its row; -1 when there is none.
int TextPrinter::lastCellColumn() const {
    const Buffer& buffer = *state_.buffer;
    const int col = buffer.isWrapPending ? buffer.x() : buffer.x() - 1;
    if (col < 0) return -1;
    return col > 0 && state_.cursorLine().at(col).isRightHalf() ? col - 1 : col;
}

/// The last column that text reaches from where the cursor is. A line feed may have taken the cursor beyond the end of
/// a row that is drawn double; it goes back to that row's last column then.
int TextPrinter::rightLimit() {
    const int last = state_.lastColumn(state_.buffer->y());
    if (state_.buffer->x() > last) state_.buffer->setX(last);
    const int right = state_.rightMargin();
    return state_.buffer->x() <= right ? std::min(right, last) : last;
}

/// The cursor behind what was written, or onto the last column with a wrap pending.
void TextPrinter::advance(int col, int limit) {
    Buffer& buffer = *state_.buffer;
    buffer.isWrapPending = col > limit;
    buffer.setX(std::min(col, limit));
    if (buffer.isWrapPending) unlinkNextRow(limit);
}

/// Whoever writes the last column anew ends the line there, until the next character wraps.
void TextPrinter::unlinkNextRow(int limit) {
    Buffer& buffer = *state_.buffer;
    const int next = buffer.y() + 1;
    if (limit == state_.cols() - 1 && next < state_.rows()) buffer.line(next).setIsWrapped(false);
}

}  // namespace orvane
