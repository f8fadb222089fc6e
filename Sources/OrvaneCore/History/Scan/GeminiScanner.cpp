#include "OrvaneCore/History/Scan/GeminiScanner.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

enum class Source { typed, copied };

/// In a copy of what the model was told, everything in tags is the program's.
bool isOfProgram(std::string_view text, Source source) {
    if (source == Source::copied) return text.starts_with('<');
    return text.starts_with("<session_context>") || text.starts_with("<hook_context>");
}

/// A content is a text, a part or a list of both, of any depth.
void appendText(const TranscriptRecord& content, Source source, std::string& joined) {
    const auto part = content.isObject() ? content.string("text") : content.string();
    const std::string_view text = Text::trimmed(part.value_or(""));
    if (!text.empty() && !isOfProgram(text, source)) joined.append(joined.empty() ? "" : "\n").append(text);
    for (const TranscriptRecord& element : content.elements())
        appendText(element, source, joined);
}

std::string textOf(const TranscriptRecord& record, Source source) {
    std::string joined;
    appendText(record["content"], source, joined);
    return joined;
}

std::optional<Date> dateOf(const TranscriptRecord& record, std::string_view key) {
    const auto text = record.string(key);
    return text ? Date::parseIso8601(*text) : std::nullopt;
}

bool isMessage(const TranscriptRecord& record) {
    const auto type = record.string("type");
    return type == "user" || type == "gemini";
}

}  // namespace

std::optional<std::string> GeminiScanner::prompt(const TranscriptRecord& record) {
    if (record.string("type") != "user") return std::nullopt;
    std::string text = textOf(record, Source::typed);
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

void GeminiScanner::read(std::string_view line, SessionScan::Part part) {
    const auto record = parsed(line);
    if (!record) return;
    if (isMessage(*record)) {
        if (record->string("id") || scan_.isNew(line)) readMessage(*record, part);
        return;
    }
    if (const auto id = record->string("$rewindTo")) return rewind(*id);
    readHeader((*record)["$set"].isObject() ? (*record)["$set"] : *record, part);
}

void GeminiScanner::readHeader(const TranscriptRecord& header, SessionScan::Part part) {
    if (const auto id = header.string("sessionId"); id && !scan_.sessionID) scan_.sessionID = *id;
    if (const auto kind = header.string("kind")) scan_.isSubagent = kind == "subagent";
    if (const auto summary = header.string("summary")) scan_.summaryTitle = *summary;
    if (const auto started = dateOf(header, "startTime"); started && !scan_.metaStartedAt)
        scan_.metaStartedAt = started;
    if (const auto updated = dateOf(header, "lastUpdated")) scan_.metaUpdatedAt = updated;
    for (const TranscriptRecord& message : header.elements("messages")) {
        if (isMessage(message)) readCopy(message, part);
    }
}

/// A line with an id that was there before takes the earlier one's place: answers grow call by call.
void GeminiScanner::readMessage(const TranscriptRecord& record, SessionScan::Part part) {
    Message message{.id = std::string(record.string("id").value_or("")),
                    .isPrompt = record.string("type") == "user",
                    .text = textOf(record, Source::typed),
                    .tokens = record["tokens"].integer("total"),
                    .at = dateOf(record, "timestamp"),
                    .part = part};
    const auto place = message.id.empty() ? places_.end() : places_.find(message.id);
    if (place != places_.end()) {
        message.part = messages_[place->second].part;
        messages_[place->second] = std::move(message);
        return;
    }
    if (!message.id.empty()) places_.emplace(message.id, messages_.size());
    messages_.push_back(std::move(message));
}

void GeminiScanner::readCopy(const TranscriptRecord& record, SessionScan::Part part) {
    if (places_.contains(record.string("id").value_or(""))) return;
    const std::string text = textOf(record, Source::copied);
    if (text.empty() || std::ranges::find(messages_, text, &Message::text) != messages_.end()) return;
    readMessage(record, part);
    messages_.back().text = text;
}

/// The conversation went back to before that message. One that was not read lies between head and tail.
void GeminiScanner::rewind(std::string_view id) {
    const auto place = places_.find(id);
    const auto isInTail = [](const Message& message) { return message.part == SessionScan::Part::tail; };
    const auto first = place == places_.end() ? std::ranges::find_if(messages_, isInTail)
                                              : messages_.begin() + static_cast<std::ptrdiff_t>(place->second);
    messages_.erase(first, messages_.end());
    std::erase_if(places_, [&](const auto& each) { return each.second >= messages_.size(); });
}

void GeminiScanner::finish() {
    for (Message& message : messages_) {
        scan_.addTokens(message.tokens);
        if (message.text.empty()) continue;
        ++scan_.messages;
        if (message.isPrompt) scan_.addPrompt(std::move(message.text), message.at, message.part);
    }
}

}  // namespace orvane
