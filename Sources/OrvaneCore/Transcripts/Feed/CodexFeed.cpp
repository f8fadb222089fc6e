#include "OrvaneCore/Transcripts/Feed/CodexFeed.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/CodexOutput.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::TranscriptFeed {

namespace {

constexpr std::array shown = {Needle("_call"),
                              Needle("\"user_message\""),
                              Needle("\"agent_message\""),
                              Needle("\"turn_aborted\""),
                              Needle("uncommittedChanges"),
                              Needle("\"UserMessage\""),
                              Needle("\"AgentMessage\""),
                              Needle("context_compacted"),
                              Needle("\"ContextCompaction\"")};
constexpr Needle output("call_output");
constexpr Needle outputType("_call_output\"");
constexpr Needle exitText("exited with code ");
constexpr Needle exitKey("exit_code");

constexpr std::string_view compacted = "context_compacted";
constexpr std::string_view defaultTool = "shell";

bool isCall(std::string_view type) {
    return type == "function_call" || type == "custom_tool_call" || type == "local_shell_call";
}

bool isOutput(std::string_view type) {
    return type.ends_with("_output") && isCall(type.substr(0, type.size() - 7));
}

/// An output that tells no failure changes nothing, and most of a rollout's bytes are such outputs. Short lines are
/// parsed, which costs no more than this.
bool isIdleOutput(std::string_view line) {
    constexpr std::size_t worthwhile = 4096;
    if (line.size() < worthwhile || !outputType.isIn(line) || exitKey.isIn(line)) return false;
    for (std::size_t at = exitText.findIn(line); at != Needle::npos; at = exitText.findIn(line, at + 1)) {
        if (CodexOutput::exitCode(line.substr(at)).value_or(0) > 0) return false;
    }
    return true;
}

std::string itemText(const TranscriptRecord& content) {
    if (const auto text = content.string()) return std::string(*text);
    for (const TranscriptRecord& element : content.elements()) {
        if (const auto text = element.string("text")) return std::string(*text);
    }
    return {};
}

void takeItem(const TranscriptRecord& item, const Origin& origin, FeedState& state) {
    const auto type = item.string("type");
    if (type == "UserMessage") state.appendUser(itemText(item["content"]), origin);
    if (type == "AgentMessage") state.appendMessage(Role::assistant, itemText(item["content"]), origin);
    if (type == "ContextCompaction") state.appendMessage(Role::notice, compacted, origin);
}

Entry call(FeedState& state, const Origin& origin, std::string_view name, const std::optional<std::string>& target) {
    Entry made = state.entry(Role::tool, origin);
    made.tool = std::string(name.empty() ? defaultTool : name);
    if (target) made.target = std::string(Text::prefix(*target, TranscriptText::maximumDetail));
    return made;
}

void takeSearch(const TranscriptRecord& payload, const Origin& origin, FeedState& state) {
    std::string query = TranscriptText::oneLine(payload["action"].string("query").value_or(""));
    Entry search = call(state, origin, "web_search", query.empty() ? std::nullopt : std::optional(std::move(query)));
    if (payload.string("status") == "failed") search.role = Role::error;
    state.append(std::move(search));
}

void takeAbort(const TranscriptRecord& payload, const Origin& origin, FeedState& state) {
    std::string text = "turn_aborted";
    if (const auto reason = payload.string("reason"); reason && !reason->empty()) text.append(": ").append(*reason);
    state.appendMessage(Role::notice, text, {.recordId = payload.string("turn_id").value_or(""), .at = origin.at});
}

}  // namespace

void CodexFeed::take(std::string_view line, FeedState& state) {
    if (std::ranges::none_of(shown, [&](const Needle& needle) { return needle.isIn(line); })) return;
    if (OversizedLine::isOversized(line)) return takeOversized(line, state);
    if (isIdleOutput(line)) return;
    const auto record = parser_.parse(line);
    if (!record) return;
    const TranscriptRecord payload = (*record)["payload"];
    const Origin origin{.recordId = {}, .at = TranscriptText::timestamp(record->string("timestamp").value_or(""))};
    takePayload(payload.string("type").value_or(""), payload, origin, state);
}

void CodexFeed::takePayload(std::string_view type, const TranscriptRecord& payload, const Origin& origin,
                            FeedState& state) {
    if (type == "user_message") state.appendUser(payload.string("message").value_or(""), origin);
    if (type == "agent_message") state.appendMessage(Role::assistant, payload.string("message").value_or(""), origin);
    if (type == "item_completed") takeItem(payload["item"], origin, state);
    if (isCall(type)) takeCall(payload, origin, state);
    if (isOutput(type)) takeOutput(payload, state);
    if (type == "web_search_call") takeSearch(payload, origin, state);
    if (type == "turn_aborted") takeAbort(payload, origin, state);
    if (type == compacted) state.appendMessage(Role::notice, compacted, origin);
}

void CodexFeed::takeCall(const TranscriptRecord& payload, const Origin& origin, FeedState& state) {
    state.appendCall(call(state, origin, payload.string("name").value_or(""), CallTarget::ofCodexCall(payload, inner_)),
                     payload.string("call_id").value_or(""));
}

void CodexFeed::takeOutput(const TranscriptRecord& payload, FeedState& state) {
    const CodexOutput outcome = CodexOutput::read(payload["output"], inner_);
    if (outcome.hasFailed) state.fail(payload.string("call_id").value_or(""), outcome.body);
}

void CodexFeed::takeOversized(std::string_view line, FeedState& state) {
    const OversizedLine ends(line, parser_);
    const auto callId = ends.value("call_id");
    if (!callId) return;
    if (output.isIn(line)) {
        if (CodexOutput::exitCode(ends.head()).value_or(0) > 0) state.fail(*callId, {});
        return;
    }
    const std::string name(Text::prefix(ends.value("name").value_or(""), 96));
    state.appendCall(call(state, {.recordId = {}, .at = ends.timestamp()}, name, CallTarget::ofCodexCall(ends, name)),
                     *callId);
}

}  // namespace orvane::TranscriptFeed
