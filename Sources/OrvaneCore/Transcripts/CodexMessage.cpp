#include "OrvaneCore/Transcripts/CodexMessage.h"

#include <algorithm>
#include <array>

#include "OrvaneCore/Support/Text.h"

namespace orvane::CodexMessage {

namespace {

constexpr std::array<std::string_view, 7> harnessOpenings = {
    "<environment_context>",  "<user_instructions>",      "<turn_aborted>", "<user_shell_command>", "<skill>",
    "<subagent_notification", "# AGENTS.md instructions",
};

struct Names {
    std::string_view event, item, role;
};

std::string message(const TranscriptRecord& line, const Names& names) {
    const TranscriptRecord payload = line["payload"];
    const auto type = payload.string("type");
    if (type == names.event) return text(payload["message"]);
    if (type == "item_completed" && payload["item"].string("type") == names.item) {
        return text(payload["item"]["content"]);
    }
    return type == "message" && payload.string("role") == names.role ? text(payload["content"]) : std::string();
}

}  // namespace

std::string text(const TranscriptRecord& content) {
    if (const auto whole = content.string()) return std::string(*whole);
    std::string joined;
    for (const TranscriptRecord& element : content.elements())
        joined += element.string("text").value_or(std::string_view());
    return joined;
}

bool isOfHarness(std::string_view text) {
    const std::string_view trimmed = Text::trimmed(text);
    return std::ranges::any_of(harnessOpenings, [&](std::string_view each) { return trimmed.starts_with(each); });
}

std::string ofUser(const TranscriptRecord& line) {
    return message(line, {.event = "user_message", .item = "UserMessage", .role = "user"});
}

std::string ofAgent(const TranscriptRecord& line) {
    return message(line, {.event = "agent_message", .item = "AgentMessage", .role = "assistant"});
}

bool notesHarness(const TranscriptRecord& message, std::size_t element) {
    const auto notes = message["internal_chat_message_metadata_passthrough"].elements("content_item_metadata");
    return element < notes.size() && notes[element]["provenance"].string("type") == "harness";
}

}  // namespace orvane::CodexMessage
