#include "OrvaneCore/Transcripts/ToolTarget.h"

#include <algorithm>
#include <string_view>

#include "OrvaneCore/Support/Text.h"

namespace orvane::ToolTarget {

namespace {

constexpr std::string_view blanks = " \n\r\t";

std::string joined(const TranscriptRecord& value) {
    if (const auto text = value.string()) return std::string(*text);
    std::string words;
    for (const TranscriptRecord& element : value.elements()) {
        const auto word = element.string();
        if (!word) return {};
        if (!words.empty()) words += ' ';
        words += *word;
    }
    return words;
}

}  // namespace

std::string of(const TranscriptRecord& arguments) {
    for (const char* key : {"file_path", "notebook_path", "pattern", "url", "query", "command", "cmd", "path", "skill",
                            "subject", "description", "prompt"}) {
        std::string target = oneLine(joined(arguments[key]));
        if (!target.empty()) return target;
    }
    return {};
}

std::string oneLine(std::string_view text) {
    std::string line;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        if (text.empty()) return std::string(Text::prefix(line, longest));
        const std::string_view word = text.substr(0, text.find_first_of(blanks));
        if (!line.empty()) line += ' ';
        line += word;
        text.remove_prefix(word.size());
    }
}

}  // namespace orvane::ToolTarget
