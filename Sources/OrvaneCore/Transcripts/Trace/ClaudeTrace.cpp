#include "OrvaneCore/Transcripts/Trace/ClaudeTrace.h"

#include <algorithm>
#include <array>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::ToolTrace {

namespace {

constexpr Needle toolUse("\"type\":\"tool_use\"");
constexpr Needle toolResult("\"tool_result\"");
constexpr Needle notification("<task-notification>");
constexpr Needle failure("\"is_error\":true");
constexpr Needle sidechain("\"isSidechain\":true");

void takeCall(const TranscriptRecord& record, const TranscriptRecord& block, TraceBuilder& builder) {
    const std::string_view name = block.string("name").value_or("");
    const TranscriptRecord input = block["input"];
    ToolEvent& event = builder.call(block.string("id").value_or(""), name);
    setTarget(event, CallTarget::of(input));
    event.timestamp = secondsOf(record);
    event.isSidechain = record.isTrue("isSidechain");
    event.isAsync = input.isTrue("run_in_background");
    event.inputDetail = claudeInputDetail(name, input);
}

std::optional<std::string_view> tagged(std::string_view text, std::string_view tag) {
    const auto inner = TranscriptText::between(text, "<" + std::string(tag) + ">", "</" + std::string(tag) + ">");
    return inner ? std::optional(Text::trimmed(*inner)) : std::nullopt;
}

std::string notificationText(const TranscriptRecord& content) {
    if (const auto text = content.string()) return std::string(Text::trimmed(*text));
    for (const TranscriptRecord& block : content.elements()) {
        if (block.string("type") == "text") return std::string(Text::trimmed(block.string("text").value_or("")));
    }
    return {};
}

}  // namespace

void ClaudeTrace::take(std::string_view line, TraceBuilder& builder) {
    if (!toolUse.isIn(line) && !toolResult.isIn(line) && !notification.isIn(line)) return;
    if (OversizedLine::isOversized(line)) return takeOversized(line, builder);
    const auto record = parser_.parse(line);
    if (!record) return;
    const TranscriptRecord content = (*record)["message"]["content"];
    const auto type = record->string("type");
    if (type == "user") {
        const std::string text = notificationText(content);
        if (text.starts_with(notification.text())) takeNotification(text, secondsOf(*record), builder);
    }
    for (const TranscriptRecord& block : content.elements()) {
        const auto kind = block.string("type");
        if (type == "assistant" && kind == "tool_use") takeCall(*record, block, builder);
        if (type == "user" && kind == "tool_result") takeResult(*record, block, builder);
    }
}

void ClaudeTrace::takeResult(const TranscriptRecord& record, const TranscriptRecord& block, TraceBuilder& builder) {
    ToolEvent* const event = builder.find(block.string("tool_use_id").value_or(""));
    if (event == nullptr) return;
    const TranscriptRecord details = record["toolUseResult"];
    const bool hasFailed = block.isTrue("is_error");
    if (details.string("status") == "async_launched") event->isAsync = true;
    for (const std::string_view key : {"agentId", "backgroundTaskId", "taskId"}) {
        if (const auto task = details.string(key)) callOfTask_[std::string(*task)] = event->id;
    }
    // The result of a call that goes on behind the conversation tells only that it began.
    if (event->isAsync && !hasFailed) return;
    end(*event,
        {.succeeded = !hasFailed, .at = secondsOf(record), .output = TranscriptText::joined(block["content"], "\n")});
}

void ClaudeTrace::takeNotification(std::string_view text, std::optional<double> at, TraceBuilder& builder) {
    const std::string_view status = tagged(text, "status").value_or("completed");
    const auto task = callOfTask_.find(std::string(tagged(text, "task-id").value_or("")));
    const auto byTask = task == callOfTask_.end() ? std::string_view() : std::string_view(task->second);
    ToolEvent* const event = builder.find(tagged(text, "tool-use-id").value_or(byTask));
    if (event == nullptr || status == "running") return;
    event->isAsync = true;
    const auto answer = tagged(text, "result");
    end(*event, {.succeeded = status == "completed",
                 .at = at,
                 .output = answer ? *answer : tagged(text, "summary").value_or("")});
}

void ClaudeTrace::takeOversized(std::string_view line, TraceBuilder& builder) {
    const OversizedLine ends(line, parser_);
    const auto date = ends.timestamp();
    const auto at = date ? std::optional(date->secondsSince1970) : std::nullopt;
    if (toolUse.isIn(ends.head())) {
        const OversizedLine block = ends.from(toolUse.text());
        const std::string name = block.value("name").value_or("");
        if (name.empty()) return;
        ToolEvent& event = builder.call(block.value("id").value_or(""), name);
        setTarget(event, CallTarget::of(block));
        event.timestamp = at;
        event.isSidechain = sidechain.isIn(ends.head());
    } else if (toolResult.isIn(line)) {
        ToolEvent* const event = builder.find(ends.valueAtEitherEnd("tool_use_id").value_or(""));
        if (event != nullptr) end(*event, {.succeeded = !failure.isIn(line), .at = at, .output = {}});
    }
}

}  // namespace orvane::ToolTrace
