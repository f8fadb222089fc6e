#include "OrvaneCore/Transcripts/Thread/PlainText.h"

#include <algorithm>

#include "OrvaneCore/Support/OutputLines.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::PlainText {

std::string lines(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    while (true) {
        // A return ends a line here: nothing that was said is drawn over.
        const std::size_t end = text.find_first_of("\r\n");
        shown += OutputLines::shown(text.substr(0, end));
        if (end == std::string_view::npos) return shown;
        shown += '\n';
        text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
    }
}

std::string call(std::string_view tool, std::string_view target, std::string_view outcome) {
    std::string line = Text::oneLine(tool);
    if (!target.empty()) line += "  " + Text::oneLine(target);
    if (!outcome.empty()) line += "  [" + Text::oneLine(outcome) + "]";
    return line;
}

}  // namespace orvane::PlainText
