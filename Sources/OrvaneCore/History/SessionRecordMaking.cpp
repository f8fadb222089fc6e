#include <algorithm>
#include <ranges>
#include <utility>

#include "OrvaneCore/History/Scan/RawLine.h"
#include "OrvaneCore/History/Scan/SessionScanner.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/TitleCut.h"

namespace orvane::SessionHistory {

namespace {

using Lines = std::span<const std::string_view>;

std::string nameWithoutExtension(const std::string& path) {
    const std::string name = lastPathComponent(path);
    const auto dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::optional<Date> firstTimestamp(Lines lines) {
    for (const std::string_view line : lines) {
        if (const auto at = RawLine::timestamp(line)) return at;
    }
    return std::nullopt;
}

std::optional<Date> newestTimestamp(Lines lines) {
    std::optional<Date> newest;
    for (const std::string_view line : lines)
        newest = std::max(newest, RawLine::timestamp(line));
    return newest;
}

Date startOf(const SessionScan& scan, Lines head, Date modifiedAt) {
    if (scan.firstPromptAt) return *scan.firstPromptAt;
    if (scan.metaStartedAt) return *scan.metaStartedAt;
    return firstTimestamp(head).value_or(modifiedAt);
}

Date endOf(const SessionScan& scan, Lines head, Lines tail, Date modifiedAt) {
    auto newest = newestTimestamp(tail);
    if (!newest) newest = newestTimestamp(head);
    return std::max(newest, scan.metaUpdatedAt).value_or(modifiedAt);
}

std::vector<std::string> allPrompts(SessionScan scan) {
    std::vector<std::string> prompts = std::move(scan.headPrompts);
    std::ranges::move(scan.tailPrompts, std::back_inserter(prompts));
    return prompts;
}

std::string titleOf(const std::string& summary, const std::vector<std::string>& prompts) {
    std::string title = titleCut(summary, titleLimit);
    return title.empty() ? titleCut(prompts.front(), titleLimit) : title;
}

std::string previewOf(const std::vector<std::string>& prompts) {
    constexpr std::string_view separator = " · ";
    std::string preview;
    for (const std::string& prompt : prompts) {
        preview.append(preview.empty() ? "" : separator).append(titleCut(prompt, previewLimit));
        if (preview.size() > previewLimit * sizeof(char32_t)) break;
    }
    return titleCut(preview, previewLimit);
}

}  // namespace

std::optional<SessionRecord> record(const Transcript& transcript, Lines head, Lines tail) {
    SessionScan scan = SessionScanner::scanned(transcript.provider, head, tail);
    if (!scan.sawPrompt || scan.isSubagent) return std::nullopt;
    SessionRecord record{.id = scan.sessionID.value_or(""),
                         .provider = transcript.provider,
                         .projectPath = scan.projectPath.value_or(transcript.projectPathHint.value_or("")),
                         .firstPromptAt = startOf(scan, head, transcript.modifiedAt),
                         .lastActivityAt = endOf(scan, head, tail, transcript.modifiedAt),
                         .messageCount = scan.messages,
                         .approximateTokens = scan.tokens,
                         .filePath = transcript.path};
    if (Text::trimmed(record.id).empty()) record.id = nameWithoutExtension(transcript.path);
    const std::string summary = std::move(scan.summaryTitle).value_or("");
    const std::vector<std::string> prompts = allPrompts(std::move(scan));
    record.title = titleOf(summary, prompts);
    // A prompt of invisible characters alone.
    if (record.title.empty()) record.title = record.id;
    record.preview = previewOf(prompts);
    return record;
}

std::vector<std::string> prompts(Lines head, Lines tail, Provider provider) {
    return allPrompts(SessionScanner::scanned(provider, head, tail));
}

}  // namespace orvane::SessionHistory
