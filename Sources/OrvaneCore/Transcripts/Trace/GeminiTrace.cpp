#include "OrvaneCore/Transcripts/Trace/GeminiTrace.h"

#include <string>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/GeminiToolCall.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"

namespace orvane::ToolTrace {

namespace {

constexpr Needle toolCalls("\"toolCalls\":[");

/// The record's date is that of the call, the call's own that of its end.
void takeCall(const TranscriptRecord& call, std::optional<double> calledAt, TraceBuilder& builder) {
    const std::string_view name = call.string("name").value_or("");
    const auto status = call.string("status");
    const auto endedAt = secondsOf(call);
    ToolEvent& event = builder.call(call.string("id").value_or(""), name);
    const auto target = CallTarget::of(call["args"]);
    setTarget(event, target);
    event.timestamp = calledAt ? calledAt : endedAt;
    event.inputDetail = claudeInputDetail(name, call["args"]);
    const bool hasFailed = status == "error" || status == "cancelled";
    if (!hasFailed && status != "success") return;
    const std::string output = hasFailed ? GeminiToolCall::failureText(call) : GeminiToolCall::outputText(call);
    end(event, {.succeeded = !hasFailed, .at = endedAt, .output = output});
}

/// The first of the calls; its result is what makes the line long.
void takeOversized(const OversizedLine& line, TraceBuilder& builder) {
    const OversizedLine call = line.from(toolCalls.text());
    const std::string name = call.value("name").value_or("");
    if (name.empty()) return;
    ToolEvent& event = builder.call(call.value("id").value_or(""), name);
    setTarget(event, CallTarget::of(call));
    if (const auto date = line.timestamp()) event.timestamp = date->secondsSince1970;
    const auto status = call.valueAtEitherEnd("status");
    if (status) end(event, {.succeeded = status == "success", .at = {}, .output = {}});
}

}  // namespace

void GeminiTrace::take(std::string_view line, TraceBuilder& builder) {
    if (line.starts_with("{\"$set\":") || !toolCalls.isIn(line)) return;
    if (OversizedLine::isOversized(line)) return takeOversized(OversizedLine(line, parser_), builder);
    const auto record = parser_.parse(line);
    if (!record) return;
    const auto calledAt = secondsOf(*record);
    for (const TranscriptRecord& call : record->elements("toolCalls"))
        takeCall(call, calledAt, builder);
}

}  // namespace orvane::ToolTrace
