#include "OrvaneCore/Transcripts/Feed/GeminiFeed.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/CallTarget.h"
#include "OrvaneCore/Transcripts/GeminiToolCall.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::TranscriptFeed {

namespace {

constexpr Needle ofUser("\"type\":\"user\"");
constexpr Needle ofGemini("\"type\":\"gemini\"");
constexpr Needle ofError("\"type\":\"error\"");

void addMessage(std::vector<Entry>& entries, Role role, std::string_view text, const Origin& origin, FeedState& state) {
    std::string cleaned = TranscriptText::message(text);
    if (cleaned.empty()) return;
    Entry& made = entries.emplace_back(state.entry(role, origin));
    made.text = std::move(cleaned);
}

Entry toolEntry(const TranscriptRecord& call, const Origin& origin, FeedState& state) {
    const auto status = call.string("status");
    const auto timestamp = TranscriptText::timestamp(call.string("timestamp").value_or(""));
    Entry made = state.entry(Role::tool, origin);
    if (timestamp) made.at = timestamp;
    made.tool = std::string(call.string("name").value_or(""));
    if (const auto target = CallTarget::of(call["args"]))
        made.target = std::string(Text::prefix(*target, TranscriptText::maximumDetail));
    if (status == "error" || status == "cancelled") made.role = Role::error;
    if (status == "error") made.text = TranscriptText::detail(GeminiToolCall::failureText(call));
    return made;
}

}  // namespace

void GeminiFeed::take(std::string_view line, FeedState& state) {
    // A patch may repeat the whole conversation.
    if (line.starts_with("{\"$set\":")) return;
    if (!ofUser.isIn(line) && !ofGemini.isIn(line) && !ofError.isIn(line)) return;
    if (OversizedLine::isOversized(line)) return takeOversized(line, state);
    const auto record = parser_.parse(line);
    if (!record) return;
    const auto type = record->string("type");
    const Origin origin{.recordId = record->string("id").value_or(""),
                        .at = TranscriptText::timestamp(record->string("timestamp").value_or(""))};
    std::vector<Entry> entries;
    if (type == "user") {
        entries = state.userEntries(TranscriptText::joined((*record)["content"], ""), origin, CommandForm::slash);
    } else if (type == "gemini") {
        entries = answer(*record, origin, state);
    } else if (type == "error") {
        addMessage(entries, Role::error, TranscriptText::joined((*record)["content"], ""), origin, state);
    }
    state.put(origin.recordId, std::move(entries));
}

std::vector<Entry> GeminiFeed::answer(const TranscriptRecord& record, const Origin& origin, FeedState& state) {
    std::vector<Entry> entries;
    addMessage(entries, Role::assistant, TranscriptText::joined(record["content"], ""), origin, state);
    Origin place = origin;
    for (const TranscriptRecord& call : record.elements("toolCalls")) {
        ++place.block;
        entries.push_back(toolEntry(call, place, state));
    }
    return entries;
}

/// The answer and the first of the calls, as far as the head tells them: the length is in the calls' results.
void GeminiFeed::takeOversized(std::string_view line, FeedState& state) {
    const OversizedLine ends(line, parser_);
    if (!ofGemini.isIn(ends.head())) return;
    const std::string recordId = ends.value("id").value_or("");
    Origin origin{.recordId = recordId, .at = ends.timestamp()};
    std::vector<Entry> entries;
    addMessage(entries, Role::assistant, ends.from("\"type\":\"gemini\"").value("content").value_or(""), origin, state);
    const OversizedLine calls = ends.from("\"toolCalls\":[");
    const std::string name = calls.head().starts_with("\"toolCalls\"") ? calls.value("name").value_or("") : "";
    if (!name.empty()) {
        origin.block = 1;
        Entry& made = entries.emplace_back(state.entry(Role::tool, origin));
        made.tool = name;
        if (const auto target = CallTarget::of(calls))
            made.target = std::string(Text::prefix(*target, TranscriptText::maximumDetail));
    }
    state.put(recordId, std::move(entries));
}

}  // namespace orvane::TranscriptFeed
