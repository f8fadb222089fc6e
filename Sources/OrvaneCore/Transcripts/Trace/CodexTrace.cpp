#include "OrvaneCore/Transcripts/Trace/CodexTrace.h"

#include <string>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/CodexOutput.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::ToolTrace {

namespace {

constexpr Needle anyCall("_call");
constexpr Needle output("call_output");

std::string inputText(const TranscriptRecord& payload) {
    const auto arguments = payload.string("arguments");
    return std::string(arguments ? *arguments : payload.string("input").value_or(""));
}

/// A search is written once, when it is over.
void takeSearch(const TranscriptRecord& record, TraceBuilder& builder) {
    const TranscriptRecord payload = record["payload"];
    ToolEvent& event = builder.call(payload.string("id").value_or(""), "web_search");
    const std::string query = TranscriptText::oneLine(payload["action"].string("query").value_or(""));
    if (!query.empty()) setTarget(event, query);
    event.timestamp = secondsOf(record);
    event.succeeded = payload.string("status") != "failed";
}

}  // namespace

void CodexTrace::take(std::string_view line, TraceBuilder& builder) {
    if (!anyCall.isIn(line)) return;
    if (OversizedLine::isOversized(line)) return takeOversized(line, builder);
    const auto record = parser_.parse(line);
    if (!record) return;
    const std::string_view type = (*record)["payload"].string("type").value_or("");
    if (type == "web_search_call") return takeSearch(*record, builder);
    for (const std::string_view call : {"function_call", "custom_tool_call", "local_shell_call"}) {
        if (type == call) takeCall(*record, builder);
        if (type.starts_with(call) && type.substr(call.size()) == "_output") takeOutput(*record, builder);
    }
}

void CodexTrace::takeCall(const TranscriptRecord& record, TraceBuilder& builder) {
    const TranscriptRecord payload = record["payload"];
    const std::string_view name = payload.string("name").value_or("");
    ToolEvent& event = builder.call(payload.string("call_id").value_or(""), name.empty() ? "shell" : name);
    setTarget(event, CallTarget::ofCodexCall(payload, inner_));
    event.timestamp = secondsOf(record);
    event.inputDetail = excerpt(inputText(payload));
}

void CodexTrace::takeOutput(const TranscriptRecord& record, TraceBuilder& builder) {
    const TranscriptRecord payload = record["payload"];
    ToolEvent* const event = builder.find(payload.string("call_id").value_or(""));
    if (event == nullptr) return;
    const CodexOutput outcome = CodexOutput::read(payload["output"], inner_);
    end(*event, {.succeeded = !outcome.hasFailed, .at = secondsOf(record), .output = outcome.body});
}

void CodexTrace::takeOversized(std::string_view line, TraceBuilder& builder) {
    const OversizedLine ends(line, parser_);
    const std::string callId = ends.value("call_id").value_or("");
    if (callId.empty()) return;
    const auto date = ends.timestamp();
    const auto at = date ? std::optional(date->secondsSince1970) : std::nullopt;
    if (output.isIn(line)) {
        ToolEvent* const event = builder.find(callId);
        const bool hasFailed = CodexOutput::exitCode(ends.head()).value_or(0) > 0;
        if (event != nullptr) end(*event, {.succeeded = !hasFailed, .at = at, .output = {}});
        return;
    }
    const std::string name = ends.value("name").value_or("shell");
    ToolEvent& event = builder.call(callId, name);
    setTarget(event, CallTarget::ofCodexCall(ends, name));
    event.timestamp = at;
}

}  // namespace orvane::ToolTrace
