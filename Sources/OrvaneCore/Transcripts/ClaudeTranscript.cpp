#include "OrvaneCore/Transcripts/ClaudeTranscript.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Agents/TabTitle.h"
#include "OrvaneCore/Transcripts/NewestFirst.h"
#include "OrvaneCore/Transcripts/PendingTool.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::ClaudeTranscript {

namespace {

using TranscriptLine::contains;
using TranscriptLine::edgesContain;

constexpr std::string_view assistantLine = R"("type":"assistant")";
constexpr std::string_view userLine = R"("type":"user")";
constexpr std::string_view clearCommand = "<command-name>/clear</command-name>";

/// What runs inside the CLI and begins no turn. A command that prompts the model begins with "<command-message>".
constexpr std::array<std::string_view, 4> localOpenings = {"<command-name>", "<local-command-", "<bash-stdout>",
                                                           "<bash-stderr>"};

std::string text(const TranscriptRecord& content) {
    if (const auto whole = content.string()) return std::string(*whole);
    std::string joined;
    for (const TranscriptRecord& block : content.elements()) {
        if (block.string("type") == "text") joined += block.string("text").value_or(std::string_view());
    }
    return joined;
}

bool isLocal(std::string_view text) {
    return std::ranges::any_of(localOpenings, [&](std::string_view each) { return text.starts_with(each); });
}

/// Reads lines from the newest on, until nothing that is wanted is missing.
class Scan {
 public:
    void take(std::string_view line) {
        if (!line.starts_with('{') || !isUseful(line)) return;
        if (line.size() > TranscriptLine::longestParsed) return takeOversized(line);
        const auto record = TranscriptLine::parsed(parser_, line);
        if (!record || record->isTrue("isSidechain")) return;
        takeMode(*record);
        const auto type = record->string("type");
        if (type == "user") takeUser(*record);
        takeUsage((*record)["message"]);
        if (type == "assistant") takeAssistant((*record)["message"]["content"]);
    }

    bool isComplete() const { return !needMode_ && !needUsage_ && !needPhase_ && !needTitle_; }
    TranscriptReading reading() && { return std::move(reading_); }

 private:
    bool isUseful(std::string_view line) const {
        return (needPhase_ && contains(line, assistantLine)) || (needsUser() && contains(line, userLine)) ||
               (needUsage_ && contains(line, R"("input_tokens")")) ||
               (needMode_ && contains(line, R"("permissionMode")"));
    }
    bool needsUser() const { return needPhase_ || needUsage_ || needTitle_; }

    void takeMode(const TranscriptRecord& record) {
        const auto mode = record.string("permissionMode");
        if (!needMode_ || !mode) return;
        reading_.permissionMode = *mode;
        needMode_ = false;
    }

    void takeUsage(const TranscriptRecord& message) {
        if (!needUsage_) return;
        std::int64_t sum = 0;
        for (const char* key : {"input_tokens", "cache_creation_input_tokens", "cache_read_input_tokens"}) {
            // No count of tokens comes near this; more is a broken file, whose sum could overflow.
            sum += std::clamp<std::int64_t>(message["usage"].integer(key).value_or(0), 0, std::int64_t{1} << 60U);
        }
        if (sum < 1) return;
        reading_.contextUsed = sum;
        if (const auto model = message.string("model")) reading_.model = *model;
        needUsage_ = false;
    }

    void takeUser(const TranscriptRecord& record) {
        const std::string content = text(record["message"]["content"]);
        if (needUsage_ && content.contains(clearCommand)) {
            reading_.didClearContext = true;
            needUsage_ = false;
        }
        if (record.isTrue("isMeta")) return;
        const bool isResult = record.contains("toolUseResult");
        if (!isResult && (record.isTrue("isCompactSummary") || isLocal(content))) return;
        decide(AgentPhase::running);
        if (needTitle_ && !isResult) takeTitle(content);
    }

    void takeTitle(std::string_view content) {
        reading_.sessionTitle = TabTitle::fromPrompt(content);
        needTitle_ = !reading_.sessionTitle;
    }

    void takeAssistant(const TranscriptRecord& content) {
        if (!needPhase_) return;
        const auto blocks = content.elements();
        const auto isTool = [](const TranscriptRecord& block) { return block.string("type") == "tool_use"; };
        const auto isText = [](const TranscriptRecord& block) { return block.string("type") == "text"; };
        if (const auto tool = std::ranges::find_if(blocks, isTool); tool != blocks.end()) {
            PendingTool::note(*tool, reading_);
            decide(AgentPhase::running);
        } else if (std::ranges::any_of(blocks, isText) || !content.string().value_or("").empty()) {
            decide(AgentPhase::turnEnded);
        }
    }

    /// An image or a dump: who wrote it stands at its ends, and its text is of no use.
    void takeOversized(std::string_view line) {
        if (edgesContain(line, R"("isSidechain":true)") || edgesContain(line, R"("isMeta":true)")) return;
        const bool isTool = edgesContain(line, assistantLine) && edgesContain(line, R"("type":"tool_use")");
        if (isTool || edgesContain(line, userLine)) decide(AgentPhase::running);
    }

    void decide(AgentPhase phase) {
        if (needPhase_) reading_.phase = phase;
        needPhase_ = false;
    }

    TranscriptParser parser_;
    TranscriptReading reading_;
    bool needMode_ = true;
    bool needUsage_ = true;
    bool needPhase_ = true;
    bool needTitle_ = true;
};

}  // namespace

std::optional<TranscriptReading> parse(std::span<const std::string_view> lines) {
    return readNewestFirst(Scan(), lines);
}

bool isClearSuccessor(std::span<const std::string_view> headLines) {
    TranscriptParser parser;
    for (const std::string_view line : headLines) {
        if (!contains(line, userLine)) continue;
        const auto record = TranscriptLine::parsed(parser, line);
        if (!record || record->string("type") != "user" || record->isTrue("isSidechain") || record->isTrue("isMeta")) {
            continue;
        }
        return text((*record)["message"]["content"]).contains(clearCommand);
    }
    return false;
}

}  // namespace orvane::ClaudeTranscript
