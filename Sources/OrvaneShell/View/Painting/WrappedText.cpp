#include "OrvaneShell/View/Painting/WrappedText.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

int widthOf(std::string_view text) {
    return static_cast<int>(Text::displayWidth(text));
}

/// The longest beginning that fits, at least one character.
std::string_view fitting(std::string_view text, int cols) {
    std::size_t size = 0;
    int width = 0;
    while (size < text.size()) {
        const std::string_view next = Text::prefix(text.substr(size), 1);
        width += widthOf(next);
        if (width > cols && size > 0) break;
        size += next.size();
    }
    return text.substr(0, size);
}

void wrapLine(std::string_view line, int cols, std::vector<std::string>& lines) {
    while (widthOf(line) > cols) {
        std::string_view head = fitting(line, cols);
        const auto blank = line.substr(0, head.size() + 1).rfind(' ');
        if (blank != std::string_view::npos && blank > 0) head = line.substr(0, blank);
        lines.emplace_back(Text::trimmed(head));
        line = Text::trimmed(line.substr(head.size()));
    }
    lines.emplace_back(line);
}

}  // namespace

std::vector<std::string> wrapped(std::string_view text, int cols) {
    std::vector<std::string> lines;
    while (true) {
        const auto end = text.find('\n');
        wrapLine(text.substr(0, end), std::max(cols, 1), lines);
        if (end == std::string_view::npos) return lines;
        text.remove_prefix(end + 1);
    }
}

}  // namespace orvane
