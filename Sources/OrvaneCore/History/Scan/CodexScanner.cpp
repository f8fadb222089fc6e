#include "OrvaneCore/History/Scan/CodexScanner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/History/Scan/RawLine.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane {

namespace {

/// Of longer lines the few members that count are read without parsing.
constexpr std::size_t scannedFrom = 16384;

bool isMeta(std::string_view line) {
    return TranscriptLine::contains(line, R"("type":"session_meta")") || line.starts_with(R"({"id":")");
}

bool holdsMessage(std::string_view line) {
    constexpr std::array<std::string_view, 4> marks = {R"("role":"user")", R"("role":"assistant")",
                                                       R"("type":"user_message")", R"("type":"UserMessage")"};
    return std::ranges::any_of(marks, [&](std::string_view mark) { return TranscriptLine::contains(line, mark); });
}

/// Records of early versions are what the payload of later ones is.
TranscriptRecord payloadOf(const TranscriptRecord& record) {
    return record["payload"].isObject() ? record["payload"] : record;
}

bool isOfHarness(std::string_view text) {
    constexpr std::array<std::string_view, 3> beginnings = {"<environment_context>", "<user_instructions>",
                                                            "# AGENTS.md instructions"};
    return std::ranges::any_of(beginnings, [&](std::string_view each) { return text.starts_with(each); });
}

/// The harness puts its own texts before those of a person, each in an element of its own.
std::optional<std::string> textOfItem(const TranscriptRecord& content) {
    std::string joined;
    bool isOfPerson = false;
    for (const TranscriptRecord& element : content.elements()) {
        const std::string_view text = Text::trimmed(element.string("text").value_or(""));
        if (text.starts_with('<') || isOfHarness(text)) continue;
        isOfPerson = true;
        if (!text.empty()) joined.append(joined.empty() ? "" : "\n").append(text);
    }
    return isOfPerson ? std::optional(joined) : std::nullopt;
}

std::string textOfElements(const TranscriptRecord& content) {
    std::string joined;
    for (const TranscriptRecord& element : content.elements()) {
        const auto text = element.string("text");
        if (text) joined.append(joined.empty() ? "" : "\n").append(*text);
    }
    return joined;
}

std::optional<CodexScanner::Prompt> event(std::string_view text) {
    text = Text::trimmed(text);
    if (isOfHarness(text)) return std::nullopt;
    return CodexScanner::Prompt{.form = CodexScanner::Prompt::Form::event, .text = std::string(text)};
}

}  // namespace

std::optional<CodexScanner::Prompt> CodexScanner::prompt(const TranscriptRecord& record) {
    const TranscriptRecord payload = payloadOf(record);
    const auto type = payload.string("type");
    if (type == "user_message") return event(payload.string("message").value_or(""));
    if (payload["item"].string("type") == "UserMessage") return event(textOfElements(payload["item"]["content"]));
    if (payload.string("role") != "user" || (type && type != "message")) return std::nullopt;
    auto text = textOfItem(payload["content"]);
    if (!text) return std::nullopt;
    return Prompt{.form = Prompt::Form::item, .text = *std::move(text)};
}

void CodexScanner::read(std::string_view line, SessionScan::Part part) {
    if (!scan_.sessionID && isMeta(line)) return readMeta(line);
    if (!scan_.projectPath) scan_.projectPath = RawLine::text(line, R"("cwd":")");
    const bool hasUsage = TranscriptLine::contains(line, R"("total_tokens":)") &&
                          !TranscriptLine::contains(line, R"("type":"token_usage_record")");
    if ((!hasUsage && !holdsMessage(line)) || !scan_.isNew(line)) return;
    const auto record = parsed(line);
    if (!record) return;
    if (hasUsage) readUsage(*record);
    readMessage(*record, line, part);
}

void CodexScanner::readMeta(std::string_view line) {
    scan_.metaStartedAt = RawLine::timestamp(line);
    if (!scan_.projectPath) scan_.projectPath = RawLine::text(line, R"("cwd":")");
    const auto record = line.size() > scannedFrom ? std::nullopt : parsed(line);
    if (!record) {
        scan_.sessionID = RawLine::text(line, R"("id":")");
        return;
    }
    const auto id = payloadOf(*record).string("id");
    if (id) scan_.sessionID = *id;
}

/// The usage of a response is told again when something else of its line changed, with the same running total.
void CodexScanner::readUsage(const TranscriptRecord& record) {
    const TranscriptRecord info = payloadOf(record)["info"];
    const auto total = info["total_token_usage"].integer("total_tokens");
    if (total && total == std::exchange(lastTotal_, total)) return;
    const auto last = info["last_token_usage"].integer("total_tokens");
    scan_.addTokens(last ? last : total);
}

void CodexScanner::readMessage(const TranscriptRecord& record, std::string_view line, SessionScan::Part part) {
    const TranscriptRecord payload = payloadOf(record);
    if (payload.string("role") == "assistant" && payload.string("type").value_or("message") == "message")
        ++scan_.messages;
    auto asked = prompt(record);
    if (!asked) return;
    Written& written = prompts_[asked->text];
    ++(asked->form == Prompt::Form::event ? written.events : written.items);
    if (!asked->text.empty()) scan_.addPrompt(std::move(asked->text), RawLine::timestamp(line), part);
}

void CodexScanner::finish() {
    for (const auto& [text, written] : prompts_)
        scan_.messages += std::max(written.events, written.items);
}

}  // namespace orvane
