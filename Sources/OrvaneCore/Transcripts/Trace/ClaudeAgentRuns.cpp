#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/ClaudeAgentReader.h"
#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane::ToolTrace {

namespace {

constexpr Needle toolUse("\"type\":\"tool_use\"");
constexpr Needle result("\"tool_result\"");
constexpr Needle sidechain("\"isSidechain\":true");

std::optional<std::string> owned(std::optional<std::string_view> text) {
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

/// Finds out which launch the lines of a subagent belong to. They name their agent, as the launch's result does; older
/// ones only name the record before them, and the first of these repeats the launch's prompt.
class RunCollector {
 public:
    void take(std::string_view line) {
        const bool isSidechain = sidechain.isIn(line);
        if (OversizedLine::isOversized(line) || (!isSidechain && !toolUse.isIn(line) && !result.isIn(line))) return;
        const auto record = parser_.parse(line);
        if (!record) return;
        takeBlocks(*record);
        if (record->isTrue("isSidechain")) takeSidechain(*record, line);
    }

    std::vector<AgentRun> runs(const std::vector<ToolEvent>& launches) && {
        for (Run& each : runs_) {
            each.run.events = std::move(each.reader).finish();
            const auto launch = std::ranges::find(launches, each.run.toolUseID, &ToolEvent::id);
            if (launch == launches.end()) continue;
            each.run.startedAt = launch->timestamp;
            each.run.durationSeconds = launch->durationSeconds;
            each.run.succeeded = launch->succeeded;
            each.run.isAsync = launch->isAsync;
        }
        std::vector<AgentRun> all;
        all.reserve(runs_.size());
        for (Run& each : runs_) {
            if (each.run.toolUseID || each.hasLines) all.push_back(std::move(each.run));
        }
        return all;
    }

 private:
    struct Run {
        AgentRun run;
        std::string prompt;
        Reader reader{Provider::claude};
        bool hasLines = false;
    };

    void takeBlocks(const TranscriptRecord& record) {
        for (const TranscriptRecord& block : record["message"].elements("content")) {
            if (block.string("type") == "tool_use") takeLaunch(block);
            if (block.string("type") == "tool_result") takeResult(record, block);
        }
    }

    void takeLaunch(const TranscriptRecord& block) {
        const std::string id(block.string("id").value_or(""));
        if (category(block.string("name").value_or("")) != ToolCategory::task || byCall_.contains(id)) return;
        const TranscriptRecord input = block["input"];
        byCall_[id] = runs_.size();
        runs_.push_back({.run = {.id = id,
                                 .toolUseID = id,
                                 .agentType = owned(input.string("subagent_type")),
                                 .description = owned(input.string("description"))},
                         .prompt = std::string(Text::trimmed(input.string("prompt").value_or("")))});
    }

    void takeResult(const TranscriptRecord& record, const TranscriptRecord& block) {
        const auto agent = record["toolUseResult"].string("agentId");
        const auto launch = byCall_.find(std::string(block.string("tool_use_id").value_or("")));
        if (!agent || launch == byCall_.end()) return;
        nameAgent(launch->second, *agent);
    }

    /// The agent's own lines may have come before.
    void nameAgent(std::size_t index, std::string_view agent) {
        const auto [known, isNew] = byAgent_.try_emplace(std::string(agent), index);
        runs_[index].run.id = agent;
        if (isNew || known->second == index) return;
        const std::size_t orphan = std::exchange(known->second, index);
        runs_[index].reader = std::exchange(runs_[orphan].reader, Reader(Provider::claude));
        runs_[index].hasLines = std::exchange(runs_[orphan].hasLines, false);
    }

    void takeSidechain(const TranscriptRecord& record, std::string_view line) {
        const auto index = runOf(record);
        if (!index) return;
        runs_[*index].reader.take(line);
        runs_[*index].hasLines = true;
        if (const auto uuid = record.string("uuid")) byRecord_[std::string(*uuid)] = *index;
    }

    std::optional<std::size_t> runOf(const TranscriptRecord& record) {
        if (const auto agent = record.string("agentId")) {
            const auto [place, isNew] = byAgent_.try_emplace(std::string(*agent), runs_.size());
            if (isNew) runs_.push_back({.run = {.id = std::string(*agent)}, .prompt = {}});
            return place->second;
        }
        if (const auto parent = record.string("parentUuid")) {
            const auto before = byRecord_.find(std::string(*parent));
            return before == byRecord_.end() ? std::nullopt : std::optional(before->second);
        }
        return runWithPrompt(TranscriptText::joined(record["message"]["content"], "\n"));
    }

    /// The first launch with this prompt that has no lines yet.
    std::optional<std::size_t> runWithPrompt(std::string_view prompt) const {
        const auto fits = [&](const Run& run) { return !run.hasLines && run.prompt == Text::trimmed(prompt); };
        const auto found = std::ranges::find_if(runs_, fits);
        return found == runs_.end() ? std::nullopt : std::optional<std::size_t>(found - runs_.begin());
    }

    TranscriptParser parser_;
    std::vector<Run> runs_;
    std::unordered_map<std::string, std::size_t> byCall_;
    std::unordered_map<std::string, std::size_t> byAgent_;
    std::unordered_map<std::string, std::size_t> byRecord_;
};

}  // namespace

struct ClaudeAgentReader::State {
    RunCollector collector;
};

ClaudeAgentReader::ClaudeAgentReader() : state_(std::make_unique<State>()) {}

ClaudeAgentReader::~ClaudeAgentReader() = default;

void ClaudeAgentReader::take(std::string_view line) {
    state_->collector.take(line);
}

std::vector<AgentRun> ClaudeAgentReader::finish(const std::vector<ToolEvent>& events) && {
    return std::move(state_->collector).runs(events);
}

std::vector<AgentRun> claudeAgentRuns(std::span<const std::string_view> lines) {
    ClaudeAgentReader reader;
    for (const std::string_view line : lines)
        reader.take(line);
    return std::move(reader).finish(events(lines, Provider::claude));
}

}  // namespace orvane::ToolTrace
