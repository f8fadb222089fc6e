#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Form/ProviderForms.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TranscriptForm {

namespace {

constexpr std::string_view claudeKinds[] = {
    "ai-title",
    "api-request",
    "api-request-blob",
    "api-request-shape",
    "assistant",
    "atis-latch",
    "attachment",
    "cost-state",
    "file-history-delta",
    "file-history-snapshot",
    "last-prompt",
    "mode",
    "permission-mode",
    "queue-operation",
    "summary",
    "system",
    "tools-used",
    "user",
};
constexpr std::string_view codexKinds[] = {
    "session_meta",
    "turn_context",
    "world_state",
    "token_usage_record",
    "compacted",
    "event_msg/agent_message",
    "event_msg/agent_reasoning",
    "event_msg/context_compacted",
    "event_msg/item_completed",
    "event_msg/task_complete",
    "event_msg/task_started",
    "event_msg/thread_settings_applied",
    "event_msg/token_count",
    "event_msg/turn_aborted",
    "event_msg/user_message",
    "response_item/additional_tools",
    "response_item/custom_tool_call",
    "response_item/custom_tool_call_output",
    "response_item/function_call",
    "response_item/function_call_output",
    "response_item/local_shell_call",
    "response_item/local_shell_call_output",
    "response_item/message",
    "response_item/reasoning",
    "response_item/web_search_call",
};
constexpr std::string_view geminiKinds[] = {"user", "gemini", "error", "info", "$set", "$rewindTo", "sessionId"};

std::span<const std::string_view> knownKinds(TranscriptProvider provider) {
    switch (provider) {
        case TranscriptProvider::claude:
            return claudeKinds;
        case TranscriptProvider::codex:
            return codexKinds;
        case TranscriptProvider::gemini:
            return geminiKinds;
    }
    return {};
}

/// A record without a type goes by its first member: the header and the updates of Gemini.
std::string kind(TranscriptProvider provider, const TranscriptRecord& record) {
    std::string kind(record.string("type").value_or(""));
    if (kind.empty()) {
        const auto members = record.members();
        return members.empty() ? "{}" : std::string(members.front().key);
    }
    if (provider != TranscriptProvider::codex || (kind != "event_msg" && kind != "response_item")) return kind;
    return kind + "/" + std::string(record["payload"].string("type").value_or(""));
}

}  // namespace

NormalizedLines normalized(TranscriptProvider provider, std::span<const std::string_view> lines) {
    switch (provider) {
        case TranscriptProvider::claude:
            return claudeForm(lines);
        case TranscriptProvider::codex:
            return codexForm(lines);
        case TranscriptProvider::gemini:
            return geminiForm(lines);
    }
    return {};
}

std::map<std::string, std::size_t> notUnderstood(TranscriptProvider provider, std::span<const std::string_view> lines) {
    TranscriptParser parser;
    std::map<std::string, std::size_t> unknown;
    const auto known = knownKinds(provider);
    for (const std::string_view line : lines) {
        if (line.size() > TranscriptLine::longestParsed || Text::trimmed(line).empty()) continue;
        const auto record = TranscriptLine::parsed(parser, line);
        const std::string name = record ? kind(provider, *record) : "malformed";
        if (std::ranges::find(known, name) == known.end()) ++unknown[name];
    }
    return unknown;
}

}  // namespace orvane::TranscriptForm
