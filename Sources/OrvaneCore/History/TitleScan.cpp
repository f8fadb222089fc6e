#include "OrvaneCore/History/TitleScan.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/History/Scan/ClaudeScanner.h"
#include "OrvaneCore/History/Scan/CodexScanner.h"
#include "OrvaneCore/History/Scan/GeminiScanner.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/TitleCut.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::SessionHistory {

namespace {

std::optional<std::string> asTitle(std::optional<std::string_view> text) {
    std::string title = titleCut(text.value_or(""), titleLimit);
    return title.empty() ? std::nullopt : std::optional(std::move(title));
}

/// The name that a record gives the conversation.
std::optional<std::string> summary(const TranscriptRecord& record, Provider provider) {
    switch (provider) {
        case Provider::claude:
            return asTitle(record.string("type") == "ai-title" ? record.string("aiTitle") : record.string("summary"));
        case Provider::codex:
            return std::nullopt;
        case Provider::gemini:
            return asTitle((record["$set"].isObject() ? record["$set"] : record).string("summary"));
    }
    std::unreachable();
}

std::optional<std::string> prompt(const TranscriptRecord& record, Provider provider) {
    switch (provider) {
        case Provider::claude:
            return asTitle(ClaudeScanner::prompt(record));
        case Provider::codex: {
            const auto found = CodexScanner::prompt(record);
            return found ? asTitle(found->text) : std::nullopt;
        }
        case Provider::gemini:
            return asTitle(GeminiScanner::prompt(record));
    }
    std::unreachable();
}

/// Whether it can hold what is looked for; most lines need no parsing.
bool isOfInterest(std::string_view line, Provider provider) {
    constexpr std::string_view marks[] = {R"("summary":)", R"("type":"user")", R"("type":"ai-title")"};
    constexpr std::string_view codexMarks[] = {R"("role":"user")", R"("type":"user_message")",
                                               R"("type":"UserMessage")"};
    const auto holds = [&](std::string_view mark) { return line.contains(mark); };
    return provider == Provider::codex ? std::ranges::any_of(codexMarks, holds) : std::ranges::any_of(marks, holds);
}

}  // namespace

std::optional<std::string> TitleScan::resolved() const {
    if (summary) return summary;
    return firstPrompt ? firstPrompt : sidechainPrompt;
}

JsonValue TitleScan::encode() const {
    boost::json::object object{{"probes", probes}};
    if (summary) object["summary"] = *summary;
    if (firstPrompt) object["firstPrompt"] = *firstPrompt;
    if (sidechainPrompt) object["sidechainPrompt"] = *sidechainPrompt;
    return object;
}

TitleScan TitleScan::decode(const JsonValue& json) {
    const JSONObject object(json);
    const auto probes = std::clamp<std::int64_t>(object.integer("probes"), 0, titleProbeLimit);
    return {.summary = object.optionalString("summary"),
            .firstPrompt = object.optionalString("firstPrompt"),
            .sidechainPrompt = object.optionalString("sidechainPrompt"),
            .probes = static_cast<int>(probes)};
}

void absorbTitle(std::string_view line, Provider provider, TitleScan& into) {
    if (into.probes >= titleProbeLimit) return;
    ++into.probes;
    if (!line.starts_with('{') || line.size() > TranscriptLine::longestParsed || !isOfInterest(line, provider)) return;
    thread_local TranscriptParser parser;
    const auto record = parser.parse(line);
    if (!record) return;
    if (auto name = summary(*record, provider)) {
        into.summary = std::move(name);
        return;
    }
    std::optional<std::string>& place = record->isTrue("isSidechain") ? into.sidechainPrompt : into.firstPrompt;
    if (!place) place = prompt(*record, provider);
}

}  // namespace orvane::SessionHistory
