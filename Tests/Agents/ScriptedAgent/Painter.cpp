#include "ScriptedAgent/Painter.h"

#include <algorithm>

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {
namespace {

using Lines = std::vector<std::string>;

void append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

/// The rows of the screen: what does not fit is cut off at the top.
Lines laidOut(const Frame& frame, Size size) {
    Lines lines = frame.conversation;
    append(lines, frame.above);
    const int gap = size.rows - static_cast<int>(lines.size() + frame.below.size());
    if (!frame.below.empty() && gap > 0) lines.resize(lines.size() + gap);
    append(lines, frame.below);
    if (const int excess = static_cast<int>(lines.size()) - size.rows; excess > 0)
        lines.erase(lines.begin(), lines.begin() + excess);
    lines.resize(size.rows);
    return lines;
}

std::string withoutMark(std::string line) {
    std::erase(line, cursorMark);
    return line;
}

struct Position {
    int row = -1;
    int col = 0;
};

Position markedPosition(const Lines& lines) {
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const std::size_t at = lines[row].find(cursorMark);
        if (at != std::string::npos) return {static_cast<int>(row), width(lines[row].substr(0, at))};
    }
    return {};
}

std::string csi(int number, char letter) {
    return "\x1b[" + std::to_string(number) + letter;
}

std::string cursorVisibility(Cursor cursor) {
    return cursor == Cursor::shown ? "\x1b[?25h" : "\x1b[?25l";
}

}  // namespace

std::string Painter::paint(const Frame& frame, Size size) {
    if (hasPainted_ && frame == last_ && size == size_) return {};
    std::string bytes;
    if (!frame.title.empty() && (!hasPainted_ || frame.title != last_.title)) bytes += "\x1b]0;" + frame.title + "\a";
    const bool isTitleAlone = hasPainted_ && size == size_ && [&] {
        Frame other = frame;
        other.title = last_.title;
        return other == last_;
    }();
    if (!isTitleAlone) {
        bytes += scenario_.frameBegin;
        bytes += scenario_.screen == Screen::alternate ? paintAlternate(frame, size) : paintMain(frame, size);
        bytes += scenario_.frameFinish;
    }
    last_ = frame;
    size_ = size;
    hasPainted_ = true;
    return bytes;
}

std::string Painter::clear() {
    shown_.clear();
    printed_ = 0;
    panelRows_ = 0;
    rowsBelowCursor_ = 0;
    hasPainted_ = false;
    return scenario_.screen == Screen::alternate ? "" : "\x1b[2J\x1b[3J\x1b[H";
}

std::string Painter::moveTo(int row) const {
    if (scenario_.moves == Moves::absolute) return "\x1b[" + std::to_string(row + 1) + ";1H";
    return "\x1b[H\r" + (row == 0 ? std::string() : csi(row, 'B'));
}

std::string Painter::paintAlternate(const Frame& frame, Size size) {
    const Lines lines = laidOut(frame, size);
    std::string bytes;
    if (size != size_ || shown_.size() != lines.size()) {
        bytes += "\x1b[2J";
        shown_.assign(lines.size(), {});
    }
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const std::string line = clipped(withoutMark(lines[row]), size.cols);
        if (line == shown_[row]) continue;
        // A row that reaches the last column must not be erased behind it: the cursor still stands on its last cell.
        bytes += moveTo(static_cast<int>(row)) + "\x1b[K" + line + "\x1b[0m";
        shown_[row] = line;
    }
    if (const Position at = markedPosition(lines); at.row >= 0)
        bytes += "\x1b[" + std::to_string(at.row + 1) + ";" + std::to_string(std::min(at.col, size.cols - 1) + 1) + "H";
    return bytes + cursorVisibility(frame.cursor);
}

std::string Painter::paintMain(const Frame& frame, Size size) {
    std::string bytes;
    // Rows were broken at the old width, so nobody knows where they stand now.
    if (hasPainted_ && size != size_) bytes += clear();
    if (rowsBelowCursor_ > 0) bytes += csi(rowsBelowCursor_, 'B');
    if (panelRows_ > 0) {
        for (int row = 0; row < panelRows_; ++row)
            bytes += "\x1b[2K\x1b[1A";
        bytes += "\x1b[2K\x1b[G";
    }
    Lines panel = frame.above;
    append(panel, frame.below);
    // What has left the screen at the top cannot be erased again.
    if (const int excess = static_cast<int>(panel.size()) - size.rows + 1; excess > 0)
        panel.erase(panel.begin(), panel.begin() + excess);
    for (; printed_ < frame.conversation.size(); ++printed_)
        bytes += clipped(withoutMark(frame.conversation[printed_]), size.cols) + "\x1b[0m\r\n";
    for (const std::string& line : panel)
        bytes += clipped(withoutMark(line), size.cols) + "\x1b[0m\r\n";
    panelRows_ = static_cast<int>(panel.size());
    const Position at = markedPosition(panel);
    rowsBelowCursor_ = at.row < 0 ? 0 : panelRows_ - at.row;
    if (at.row >= 0) bytes += csi(rowsBelowCursor_, 'A') + csi(std::min(at.col, size.cols - 1) + 1, 'G');
    return bytes + cursorVisibility(frame.cursor);
}

}  // namespace orvane::scripted
