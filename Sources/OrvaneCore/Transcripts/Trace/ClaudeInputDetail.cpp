#include <algorithm>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"
#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"

namespace orvane::ToolTrace {

namespace {

void addMarked(std::string& detail, std::string_view mark, std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        detail.append(detail.empty() ? "" : "\n").append(mark).append(line);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
}

void addChange(std::string& detail, const TranscriptRecord& change) {
    addMarked(detail, "- ", change.string("old_string").value_or(""));
    addMarked(detail, "+ ", change.string("new_string").value_or(""));
}

std::string changes(const TranscriptRecord& input) {
    std::string detail;
    addChange(detail, input);
    for (const TranscriptRecord& change : input.elements("edits"))
        addChange(detail, change);
    return detail;
}

std::string todoList(const TranscriptRecord& input) {
    std::string detail;
    for (const TranscriptRecord& todo : input.elements("todos")) {
        const bool isDone = todo.string("status") == "completed";
        addMarked(detail, isDone ? "[x] " : "[ ] ", todo.string("content").value_or(""));
    }
    return detail;
}

std::string members(const TranscriptRecord& input) {
    std::string detail;
    for (const TranscriptRecord::Member& member : input.members()) {
        const std::string mark = std::string(member.key) + ": ";
        if (const auto text = member.value.string()) {
            addMarked(detail, mark, *text);
        } else if (const auto number = member.value.integer()) {
            addMarked(detail, mark, std::to_string(*number));
        }
    }
    return detail;
}

std::string detailOf(std::string_view name, const TranscriptRecord& input) {
    if (name == "TodoWrite") return todoList(input);
    const ToolCategory kind = category(name);
    if (kind == ToolCategory::edit) {
        std::string detail = changes(input);
        if (!detail.empty()) return detail;
    }
    for (const std::string_view key : {"command", "plan", "prompt", "content"}) {
        if (const auto text = input.string(key); text && !Text::trimmed(*text).empty()) return std::string(*text);
    }
    return members(input);
}

}  // namespace

std::optional<std::string> claudeInputDetail(std::string_view name, const TranscriptRecord& input) {
    return excerpt(detailOf(name, input));
}

}  // namespace orvane::ToolTrace
