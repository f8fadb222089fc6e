#include "OrvaneCore/Transcripts/Feed/ClaudeFeed.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::TranscriptFeed {

namespace {

constexpr Needle ofUser("\"type\":\"user\"");
constexpr Needle ofAssistant("\"type\":\"assistant\"");
constexpr Needle result("\"type\":\"tool_result\"");
constexpr Needle anyResult("\"tool_result\"");
constexpr Needle toolUse("\"type\":\"tool_use\"");
constexpr Needle meta("\"isMeta\":true");
constexpr Needle failure("\"is_error\":true");
constexpr Needle failureKey("\"is_error\"");
constexpr Needle summary("\"isCompactSummary\":true");
constexpr Needle sidechain("\"isSidechain\":true");

constexpr std::size_t maximumThought = 4000;

/// A result that did not fail changes nothing, and most of a transcript's bytes are such results. Short lines are
/// parsed, which costs no more than this.
bool isIdleResult(std::string_view line) {
    constexpr std::size_t worthwhile = 4096;
    if (line.size() < worthwhile || ofAssistant.isIn(line) || summary.isIn(line)) return false;
    for (std::size_t at = failureKey.findIn(line); at != Needle::npos; at = failureKey.findIn(line, at + 1)) {
        if (!line.substr(at + failureKey.text().size()).starts_with(":false")) return false;
    }
    return true;
}

Entry call(FeedState& state, const Origin& origin, std::string_view name, std::optional<std::string> target) {
    Entry made = state.entry(Role::tool, origin);
    made.tool = std::string(name);
    if (target) made.target = std::string(Text::prefix(*target, TranscriptText::maximumDetail));
    return made;
}

}  // namespace

void ClaudeFeed::take(std::string_view line, FeedState& state) {
    if (!ofUser.isIn(line) && !ofAssistant.isIn(line)) return;
    const bool holdsResult = result.isIn(line);
    if (!holdsResult && meta.isIn(line)) return;
    if (OversizedLine::isOversized(line)) return takeOversized(line, state);
    if (holdsResult && isIdleResult(line)) return;
    const auto record = parser_.parse(line);
    if (!record || record->isTrue("isSidechain") || record->isTrue("isMeta")) return;
    const TranscriptRecord message = (*record)["message"];
    if (!message.isObject()) return;
    const Origin origin{.recordId = record->string("uuid").value_or(""),
                        .at = TranscriptText::timestamp(record->string("timestamp").value_or(""))};
    const TranscriptRecord content = message["content"];
    if (record->isTrue("isCompactSummary"))
        return state.appendMessage(Role::notice, TranscriptText::joined(content, "\n"), origin);
    const auto type = record->string("type");
    if (type == "assistant") takeAssistant(message, origin, state);
    if (type == "user") takeUser(content, origin, state);
}

void ClaudeFeed::takeAssistant(const TranscriptRecord& message, const Origin& origin, FeedState& state) {
    // What the CLI wrote itself, such as the failure of a request.
    const Role role = message.string("model") == "<synthetic>" ? Role::error : Role::assistant;
    if (const auto text = message.string("content")) return state.appendMessage(role, *text, origin);
    Origin place = origin;
    for (const TranscriptRecord& block : message.elements("content")) {
        takeBlock(block, role, place, state);
        ++place.block;
    }
}

void ClaudeFeed::takeBlock(const TranscriptRecord& block, Role textRole, const Origin& origin, FeedState& state) {
    const auto type = block.string("type");
    if (type == "text") {
        state.appendMessage(textRole, block.string("text").value_or(""), origin);
    } else if (type == "thinking") {
        const std::string_view thought = Text::prefix(block.string("thinking").value_or(""), maximumThought);
        state.appendMessage(Role::thinking, thought, origin);
    } else if (type == "tool_use") {
        state.appendCall(call(state, origin, block.string("name").value_or(""), CallTarget::of(block["input"])),
                         block.string("id").value_or(""));
    }
}

void ClaudeFeed::takeUser(const TranscriptRecord& content, const Origin& origin, FeedState& state) {
    if (const auto text = content.string()) return state.appendUser(*text, origin);
    const std::vector<TranscriptRecord> blocks = content.elements();
    bool holdsResult = false;
    for (const TranscriptRecord& block : blocks) {
        if (block.string("type") != "tool_result") continue;
        holdsResult = true;
        if (block.isTrue("is_error"))
            state.fail(block.string("tool_use_id").value_or(""), TranscriptText::joined(block["content"], "\n"));
    }
    if (holdsResult) return;
    Origin place = origin;
    for (const TranscriptRecord& block : blocks) {
        if (block.string("type") == "text") state.appendUser(block.string("text").value_or(""), place);
        ++place.block;
    }
}

void ClaudeFeed::takeOversized(std::string_view line, FeedState& state) {
    const OversizedLine ends(line, parser_);
    if (sidechain.isIn(ends.head())) return;
    if (toolUse.isIn(line)) {
        const OversizedLine block = ends.from(toolUse.text());
        const std::string name = block.value("name").value_or("");
        const Origin origin{.recordId = {}, .at = ends.timestamp()};
        if (!name.empty())
            state.appendCall(call(state, origin, Text::prefix(name, 96), CallTarget::of(block)),
                             block.value("id").value_or(""));
    }
    if (anyResult.isIn(line) && failure.isIn(line)) state.fail(ends.valueAtEitherEnd("tool_use_id").value_or(""), {});
}

}  // namespace orvane::TranscriptFeed
