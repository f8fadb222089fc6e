#include "OrvaneCore/Transcripts/SubagentTrace.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ranges>
#include <utility>

#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"
#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"

namespace orvane::SubagentTrace {

namespace {

/// Of the two spellings that the agents' own versions use.
std::optional<std::string> member(const TranscriptRecord& object, std::string_view key, std::string_view otherKey) {
    const auto text = object.string(key);
    const auto either = text ? text : object.string(otherKey);
    return either ? std::optional<std::string>(*either) : std::nullopt;
}

/// The date of the first line, in the order of the range, that has one; in seconds since 1970.
template <typename Lines>
std::optional<double> firstDate(Lines&& lines, TranscriptParser& parser) {
    for (const std::string_view line : lines) {
        if (OversizedLine::isOversized(line)) continue;
        const auto record = parser.parse(line);
        const auto at = record ? ToolTrace::secondsOf(*record) : std::nullopt;
        if (at) return at;
    }
    return std::nullopt;
}

/// The launch's result is the better witness of how it ended, except of one that goes on behind the conversation.
void complete(AgentRun& launch, AgentRun file) {
    launch.id = std::move(file.id);
    if (launch.events.size() < file.events.size()) launch.events = std::move(file.events);
    if (!launch.agentType) launch.agentType = std::move(file.agentType);
    if (!launch.description) launch.description = std::move(file.description);
    if (!launch.startedAt) launch.startedAt = file.startedAt;
    if (launch.succeeded) return;
    launch.succeeded = file.succeeded;
    launch.durationSeconds = file.durationSeconds;
}

bool hasEndedTurn(std::span<const std::string_view> lines, TranscriptParser& parser) {
    for (const std::string_view line : std::views::reverse(lines)) {
        const auto record = OversizedLine::isOversized(line) ? std::nullopt : parser.parse(line);
        const auto type = record ? record->string("type") : std::nullopt;
        if (type == "user") return false;
        if (type == "assistant") return (*record)["message"].string("stop_reason") == "end_turn";
    }
    return false;
}

}  // namespace

std::optional<std::string> agentID(std::string_view fromFileName) {
    constexpr std::string_view prefix = "agent-";
    if (!fromFileName.starts_with(prefix)) return std::nullopt;
    for (const std::string_view ending : {".meta.json", ".jsonl"}) {
        if (!fromFileName.ends_with(ending) || fromFileName.size() <= prefix.size() + ending.size()) continue;
        fromFileName.remove_suffix(ending.size());
        return std::string(fromFileName.substr(prefix.size()));
    }
    return std::nullopt;
}

std::optional<Meta> meta(std::string_view fromJSON, std::string_view agentID) {
    TranscriptParser parser;
    const auto object = parser.parse(fromJSON);
    if (!object || !object->isObject()) return std::nullopt;
    constexpr std::int64_t deepest = 1000;
    return Meta{.agentID = std::string(agentID),
                .agentType = member(*object, "agentType", "agent_type"),
                .description = member(*object, "description", "description"),
                .toolUseID = member(*object, "toolUseId", "toolUseID"),
                .parentAgentID = member(*object, "parentAgentId", "parentAgentID"),
                .spawnDepth =
                    static_cast<int>(std::clamp<std::int64_t>(object->integer("spawnDepth").value_or(0), 0, deepest))};
}

AgentRun run(const Meta& meta, std::span<const std::string_view> lines) {
    TranscriptParser parser;
    AgentRun run{.id = meta.agentID,
                 .toolUseID = meta.toolUseID,
                 .agentType = meta.agentType,
                 .description = meta.description,
                 .startedAt = firstDate(lines, parser),
                 .events = ToolTrace::events(lines, ToolTrace::Provider::claude)};
    const auto endedAt = firstDate(std::views::reverse(lines), parser);
    if (run.startedAt && endedAt && *endedAt >= *run.startedAt) run.durationSeconds = *endedAt - *run.startedAt;
    if (hasEndedTurn(lines, parser)) run.succeeded = true;
    return run;
}

std::vector<AgentRun> merged(std::vector<AgentRun> launched, std::vector<AgentRun> fromFiles) {
    std::vector<AgentRun> rest;
    for (AgentRun& file : fromFiles) {
        const auto launch = std::ranges::find_if(launched, [&](const AgentRun& run) {
            return run.id == file.id || (file.toolUseID && run.toolUseID == file.toolUseID);
        });
        if (launch == launched.end()) {
            rest.push_back(std::move(file));
        } else {
            complete(*launch, std::move(file));
        }
    }
    std::ranges::stable_sort(rest, {}, [](const AgentRun& run) { return run.startedAt.value_or(0); });
    std::ranges::move(rest, std::back_inserter(launched));
    return launched;
}

}  // namespace orvane::SubagentTrace
