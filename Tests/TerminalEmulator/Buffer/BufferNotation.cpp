#include "BufferNotation.h"

namespace orvane::testing {
namespace {

std::string rowText(const RowView& row) {
    static const ClusterTable clusters;
    return row.translateToString(clusters, {.trimsRight = true, .skipsNullCellsFollowingWide = true});
}

std::vector<std::string> rowsFrom(const Buffer& buffer, int first) {
    std::vector<std::string> rows;
    for (int index = first; index < buffer.count(); ++index) {
        const RowView row = buffer.row(index);
        rows.push_back((row.isWrapped ? "+" : "") + rowText(row));
    }
    while (!rows.empty() && rows.back().empty())
        rows.pop_back();
    return rows;
}

/// A continued row with its blanks, but not the column that a wide character left.
std::string fullText(const Buffer& buffer, int index, int startCol) {
    static const ClusterTable clusters;
    const RowView row = buffer.row(index);
    const RowView next = buffer.row(index + 1);
    const bool continues = index + 1 < buffer.count() && next.isWrapped;
    const StoredCell last = row.at(row.cols - 1);
    const bool leavesLast = continues && next.at(0).isWide() && last.isEmpty() && !last.isRightHalf();
    return row.translateToString(clusters, {.trimsRight = !continues,
                                            .startCol = startCol,
                                            .endCol = row.cols - (leavesLast ? 1 : 0),
                                            .skipsNullCellsFollowingWide = true});
}

void trimBlanks(std::string& text) {
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
}

void nextRow(Buffer& buffer, Buffer::NewRow newRow) {
    buffer.setX(0);
    buffer.isWrapPending = false;
    if (buffer.y() < buffer.rows() - 1) {
        buffer.setY(buffer.y() + 1);
        buffer.line(buffer.y()).setIsWrapped(newRow == Buffer::NewRow::continues);
    } else {
        buffer.scrollUp(0, buffer.rows() - 1, {}, newRow);
    }
}

}  // namespace

std::vector<std::string> ringRows(const Buffer& buffer) {
    return rowsFrom(buffer, 0);
}

std::vector<std::string> screenRows(const Buffer& buffer) {
    return rowsFrom(buffer, buffer.yBase());
}

std::vector<std::string> logicalLines(const Buffer& buffer) {
    std::vector<std::string> lines;
    for (int index = 0; index < buffer.count(); ++index) {
        if (index == 0 || !buffer.row(index).isWrapped) lines.emplace_back();
        lines.back() += fullText(buffer, index, 0);
    }
    for (std::string& line : lines)
        trimBlanks(line);
    while (!lines.empty() && lines.back().empty())
        lines.pop_back();
    return lines;
}

std::string textFromCursor(const Buffer& buffer) {
    const int cursorRow = buffer.yBase() + buffer.y();
    std::string text = fullText(buffer, cursorRow, buffer.x() + (buffer.isWrapPending ? 1 : 0));
    for (int index = cursorRow + 1; index < buffer.count(); ++index) {
        if (!buffer.row(index).isWrapped) {
            trimBlanks(text);
            text += '\n';
        }
        text += fullText(buffer, index, 0);
    }
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text;
}

void type(Buffer& buffer, std::u32string_view text, const Pen& pen) {
    for (const char32_t character : text) {
        if (character == U'\n') {
            nextRow(buffer, Buffer::NewRow::startsLine);
            continue;
        }
        const int width = character >= 0x3000 ? 2 : 1;
        if (buffer.isWrapPending || buffer.x() + width > buffer.cols()) nextRow(buffer, Buffer::NewRow::continues);
        buffer.line(buffer.y()).writeCell(buffer.x(), static_cast<std::int32_t>(character), width, pen);
        const int behind = buffer.x() + width;
        buffer.isWrapPending = behind == buffer.cols();
        buffer.setX(behind);
    }
}

std::string splitCharacter(const Buffer& buffer) {
    for (int index = 0; index < buffer.count(); ++index) {
        const RowView row = buffer.row(index);
        if (static_cast<int>(row.cells.size()) > row.cols) return "row " + std::to_string(index) + " is too long";
        for (int col = 0; col < row.cols; ++col) {
            const bool followsWide = col > 0 && row.at(col - 1).isWide();
            if (row.at(col).isRightHalf() != followsWide || (col == row.cols - 1 && row.at(col).isWide())) {
                return "row " + std::to_string(index) + ", column " + std::to_string(col);
            }
        }
    }
    return {};
}

}  // namespace orvane::testing
