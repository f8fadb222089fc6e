#include "OrvaneCore/History/Scan/ClaudeScanner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/History/Scan/RawLine.h"
#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane {

namespace {

enum class Kind { user, assistant };

/// Of the record, or of one inside of it; in one pass, for most lines are neither and many are long.
std::optional<Kind> kindOf(std::string_view line) {
    constexpr Needle key(R"("type":")");
    for (auto at = key.findIn(line); at != Needle::npos; at = key.findIn(line, at)) {
        at += key.text().size();
        const std::string_view value = line.substr(at);
        if (value.starts_with(R"(user")")) return Kind::user;
        if (value.starts_with(R"(assistant")")) return Kind::assistant;
    }
    return std::nullopt;
}

constexpr Needle toolResult(R"("toolUseResult":)");

/// Of the record; it stands right before the place, behind what the tool gave back.
std::string_view idBefore(std::string_view line, std::size_t place) {
    constexpr std::size_t nearby = 512;
    constexpr std::string_view key = R"("uuid":")";
    const std::size_t start = place - std::min(place, nearby);
    if (const auto id = RawLine::escapedText(line.substr(start, place - start), key)) return *id;
    return RawLine::escapedText(line, key).value_or(line);
}

/// The texts that a person wrote: an editor puts what it has open before them, in tags.
std::string textOf(const TranscriptRecord& content) {
    if (const auto text = content.string()) return std::string(*text);
    std::string joined;
    for (const TranscriptRecord& block : content.elements()) {
        if (block.string("type") != "text") continue;
        const std::string_view text = Text::trimmed(block.string("text").value_or(""));
        if (text.empty() || text.starts_with('<')) continue;
        joined.append(joined.empty() ? "" : "\n").append(text);
    }
    return joined;
}

std::optional<std::string> cleaned(std::string_view text) {
    constexpr std::array<std::string_view, 3> notes = {"<", "Caveat:", "[Request interrupted by user"};
    text = Text::trimmed(text);
    const auto begins = [&](std::string_view note) { return text.starts_with(note); };
    if (text.empty() || std::ranges::any_of(notes, begins)) return std::nullopt;
    return std::string(text);
}

}  // namespace

std::optional<std::string> ClaudeScanner::prompt(const TranscriptRecord& record) {
    if (record.string("type") != "user" || record.isTrue("isMeta") || record.isTrue("isCompactSummary") ||
        record.contains("toolUseResult"))
        return std::nullopt;
    return cleaned(textOf(record["message"]["content"]));
}

void ClaudeScanner::read(std::string_view line, SessionScan::Part part) {
    if (line.starts_with(R"({"type":"ai-title")")) {
        const auto record = parsed(line);
        const auto title = record ? record->string("aiTitle") : std::nullopt;
        if (title) scan_.summaryTitle = *title;
        return;
    }
    if (!scan_.projectPath) scan_.projectPath = RawLine::text(line, R"("cwd":")");
    if (!scan_.sessionID) scan_.sessionID = RawLine::text(line, R"("sessionId":")");
    const auto kind = kindOf(line);
    if (!kind) return;
    // What tools gave back is most of a transcript; of those lines the id is all that counts.
    const auto result = *kind == Kind::user ? toolResult.findIn(line) : Needle::npos;
    if (result != Needle::npos) {
        if (scan_.isNew(idBefore(line, result))) ++scan_.messages;
        return;
    }
    readMessage(line, part);
}

void ClaudeScanner::readMessage(std::string_view line, SessionScan::Part part) {
    const auto record = parsed(line);
    if (!record) return readCut(line, part);
    const auto type = record->string("type");
    if (type != "user" && type != "assistant") return;
    if (!scan_.isNew(record->string("uuid").value_or(line))) return;
    ++scan_.messages;
    if (type == "assistant") return addUsage((*record)["message"]);
    if (record->isTrue("isSidechain")) return;
    if (auto text = prompt(*record)) scan_.addPrompt(*std::move(text), RawLine::timestamp(line), part);
}

/// The blocks of one answer are records of their own and repeat its usage.
void ClaudeScanner::addUsage(const TranscriptRecord& message) {
    const auto id = message.string("id");
    if (id && !scan_.isNew(*id)) return;
    const TranscriptRecord usage = message["usage"];
    for (const char* key : {"input_tokens", "output_tokens", "cache_creation_input_tokens", "cache_read_input_tokens"})
        scan_.addTokens(usage.integer(key));
}

/// A first prompt with a large picture reaches beyond what is read.
void ClaudeScanner::readCut(std::string_view line, SessionScan::Part part) {
    if (scan_.sawPrompt || !TranscriptLine::contains(line, R"("role":"user")") ||
        TranscriptLine::contains(line, R"("tool_use_id")") || TranscriptLine::contains(line, R"("isSidechain":true)"))
        return;
    const bool isText = TranscriptLine::contains(line, R"("content":")");
    const auto text = RawLine::text(line, isText ? R"("content":")" : R"("text":")");
    auto words = text ? cleaned(*text) : std::nullopt;
    if (!words) return;
    ++scan_.messages;
    scan_.addPrompt(*std::move(words), RawLine::timestamp(line), part);
}

}  // namespace orvane
