#include "OrvaneCore/Transcripts/CodexTranscript.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "OrvaneCore/Agents/TabTitle.h"
#include "OrvaneCore/Transcripts/NewestFirst.h"
#include "OrvaneCore/Transcripts/RecordSearch.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::CodexTranscript {

namespace {

using TranscriptLine::contains;

/// Reads lines from the newest on, until nothing that is wanted is missing.
class Scan {
 public:
    void take(std::string_view line) {
        if (!line.starts_with('{')) return;
        if (!reading_.phase) reading_.phase = phase(line);
        if (!reading_.sessionTitle) takeTitle(line);
        if (needsFigures(line)) takeFigures(line);
    }

    bool isComplete() const {
        return reading_.phase && reading_.sessionTitle && reading_.contextUsed && reading_.contextWindow &&
               reading_.model;
    }

    TranscriptReading reading() && {
        if (!reading_.sessionTitle) reading_.sessionTitle = std::move(saidMeanwhile_);
        return std::move(reading_);
    }

 private:
    static std::optional<AgentPhase> phase(std::string_view line) {
        if (contains(line, R"("type":"task_complete")")) return AgentPhase::turnEnded;
        for (const char* marker :
             {R"("type":"task_started")", R"("type":"user_message")", R"("type":"turn_aborted")"}) {
            if (contains(line, marker)) return AgentPhase::running;
        }
        return std::nullopt;
    }

    void takeTitle(std::string_view line) {
        if (contains(line, R"("type":"user_message")") || contains(line, R"("role":"user")")) {
            reading_.sessionTitle = TabTitle::fromCodexUserMessageLine(line);
        } else if (!saidMeanwhile_ && contains(line, R"("phase":"commentary")")) {
            saidMeanwhile_ = TabTitle::fromCodexAgentMessageLine(line);
        }
    }

    bool needsFigures(std::string_view line) const {
        return (!reading_.contextUsed && contains(line, "token_usage")) ||
               (!reading_.contextWindow && contains(line, "model_context_window")) ||
               (!reading_.model && contains(line, R"("model")"));
    }

    void takeFigures(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        if (!record) return;
        if (!reading_.contextUsed && contains(line, "token_usage")) reading_.contextUsed = contextUsed(*record);
        if (!reading_.contextWindow) {
            const auto window = RecordSearch::integer(*record, "model_context_window");
            if (window.value_or(0) >= 1) reading_.contextWindow = window;
        }
        if (const auto model = RecordSearch::string(*record, "model"); model && !reading_.model) {
            reading_.model = *model;
        }
    }

    /// The newest response tells how full the context is; the running total beside it tells what was spent.
    static std::optional<std::int64_t> contextUsed(const TranscriptRecord& record) {
        const TranscriptRecord last = RecordSearch::object(record, "last_token_usage");
        const TranscriptRecord usage = last.isObject() ? last : record;
        const auto part = [&](const char* key) {
            return std::clamp<std::int64_t>(RecordSearch::integer(usage, key).value_or(0), 0, std::int64_t{1} << 60U);
        };
        const auto total = RecordSearch::integer(usage, "total_tokens");
        const std::int64_t used = total ? *total : part("input_tokens") + part("output_tokens");
        return used >= 1 ? std::optional(used) : std::nullopt;
    }

    TranscriptParser parser_;
    TranscriptReading reading_;
    std::optional<std::string> saidMeanwhile_;
};

std::string_view withoutSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path;
}

}  // namespace

std::optional<TranscriptReading> parse(std::span<const std::string_view> lines) {
    return readNewestFirst(Scan(), lines);
}

bool belongsToProject(std::span<const std::string_view> headLines, std::string_view projectPath) {
    for (const std::string_view line : headLines) {
        if (!contains(line, R"("cwd")")) continue;
        TranscriptParser parser;
        const auto record = TranscriptLine::parsed(parser, line);
        std::optional<std::string> folder;
        if (!record) folder = TranscriptLine::scannedString(line, "cwd");
        if (const auto found = record ? RecordSearch::string(*record, "cwd") : std::nullopt) folder = *found;
        return folder && withoutSlashes(*folder) == withoutSlashes(projectPath);
    }
    return false;
}

}  // namespace orvane::CodexTranscript
