#include "OrvaneCore/Transcripts/GeminiTranscript.h"

#include <algorithm>
#include <ranges>

#include "OrvaneCore/Transcripts/GeminiScan.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::GeminiTranscript {

namespace {

using TranscriptLine::contains;

bool isUseful(std::string_view line) {
    constexpr std::array<std::string_view, 4> needles = {R"("type":"gemini")", R"("type":"user")", R"("type":"error")",
                                                         Schema::rewind};
    return std::ranges::any_of(needles, [&](std::string_view needle) { return contains(line, needle); });
}

/// Of the first line that names the key, if it is a text.
std::optional<std::string> headValue(std::span<const std::string_view> headLines, std::string_view key) {
    const std::string needle = "\"" + std::string(key) + "\"";
    for (const std::string_view line : headLines) {
        if (!contains(line, needle)) continue;
        TranscriptParser parser;
        const auto record = TranscriptLine::parsed(parser, line);
        if (!record) return TranscriptLine::scannedString(line, key);
        const auto value = record->string(key);
        return value ? std::optional<std::string>(*value) : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::optional<TranscriptReading> parse(std::span<const std::string_view> lines) {
    TranscriptParser parser;
    Scan scan;
    for (const std::string_view line : std::views::reverse(lines)) {
        if (!isUseful(line)) continue;
        if (const auto record = TranscriptLine::parsed(parser, line)) scan.take(*record);
        if (scan.isComplete()) break;
    }
    return scan.reading();
}

std::optional<TranscriptReading> parseLegacyDocument(std::string_view text) {
    TranscriptParser parser;
    const auto document = parser.parse(text);
    if (!document || !document->isObject()) return std::nullopt;
    if (document->string(Schema::conversationKind) == Schema::subagentConversation) return std::nullopt;
    Scan scan;
    for (const TranscriptRecord& record : std::views::reverse(document->elements(Schema::messages))) {
        scan.take(record);
        if (scan.isComplete()) break;
    }
    return scan.reading();
}

std::vector<std::string> legacyLines(std::string_view text) {
    TranscriptParser parser;
    const auto document = parser.parse(text);
    if (!document || !document->isObject()) return {};
    std::string header = "{";
    for (const TranscriptRecord::Member& member : document->members()) {
        if (member.key == Schema::messages) continue;
        header += (header.size() > 1 ? ",\"" : "\"") + std::string(member.key) + "\":" + member.value.json();
    }
    std::vector<std::string> lines{header + "}"};
    for (const TranscriptRecord& message : document->elements(Schema::messages))
        lines.push_back(message.json());
    return lines;
}

std::optional<std::int64_t> contextWindow(std::string_view forModel) {
    if (forModel.empty()) return std::nullopt;
    return forModel.starts_with("gemma-4") ? Schema::gemmaContextWindow : Schema::defaultContextWindow;
}

bool belongsToProject(std::span<const std::string_view> headLines, std::string_view projectPath,
                      const PathResolution& resolved) {
    const auto hash = headValue(headLines, Schema::projectHash);
    if (!hash) return false;
    return *hash == projectHash(projectPath) || (resolved && *hash == projectHash(resolved(std::string(projectPath))));
}

bool isSubagent(std::span<const std::string_view> headLines) {
    return headValue(headLines, Schema::conversationKind) == Schema::subagentConversation;
}

bool isSessionFile(std::string_view name) {
    return name.starts_with(Schema::sessionFilePrefix) && (name.ends_with(".jsonl") || name.ends_with(".json"));
}

}  // namespace orvane::GeminiTranscript
