#include "OrvaneCore/Transcripts/Thread/Markdown.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"

namespace orvane::Markdown {

namespace {

std::size_t longestBacktickRun(std::string_view text) {
    std::size_t longest = 0;
    std::size_t run = 0;
    for (const char byte : text) {
        run = byte == '`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

/// The marks that a line opens or closes a fenced block with, or none.
std::string_view fence(std::string_view line) {
    constexpr std::size_t deepestIndent = 3;
    constexpr std::size_t shortest = 3;
    const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
    line.remove_prefix(start);
    if (start > deepestIndent || line.empty() || (line.front() != '`' && line.front() != '~')) return {};
    const std::string_view marks = line.substr(0, line.find_first_not_of(line.front()));
    const bool isSpan = marks.front() == '`' && line.substr(marks.size()).contains('`');
    return marks.size() < shortest || isSpan ? std::string_view() : marks;
}

bool isBareFence(std::string_view line) {
    return line.find_first_not_of(" `~\t") == std::string_view::npos;
}

}  // namespace

std::string escaped(std::string_view text) {
    constexpr std::string_view marks = "\\`*_[]<>#|~&";
    std::string plain;
    for (const char byte : Text::oneLine(text)) {
        if (marks.contains(byte)) plain += '\\';
        plain += byte;
    }
    return plain;
}

std::string code(std::string_view text) {
    const std::string line = Text::oneLine(text);
    const std::string marks(longestBacktickRun(line) + 1, '`');
    const char* const gap = marks.size() > 1 ? " " : "";
    return marks + gap + line + gap + marks;
}

std::string quoted(std::string_view text) {
    std::string quote = "> ";
    for (const char byte : text) {
        quote += byte;
        if (byte == '\n') quote += "> ";
    }
    return quote;
}

std::string closed(std::string text) {
    std::string_view open;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::string_view marks = fence(line);
        if (marks.empty()) continue;
        if (open.empty()) {
            open = marks;
        } else if (marks.front() == open.front() && marks.size() >= open.size() && isBareFence(line)) {
            open = {};
        }
    }
    const std::string end(open);
    if (!end.empty()) text += "\n" + end;
    return text;
}

}  // namespace orvane::Markdown
