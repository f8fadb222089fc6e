#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane {

/// The files that Claude Code keeps beside a transcript for its subagents: "agent-ID.jsonl" with the conversation and
/// "agent-ID.meta.json" with what it was started for.
namespace SubagentTrace {

struct Meta {
    std::string agentID;
    std::optional<std::string> agentType;
    std::optional<std::string> description;
    std::optional<std::string> toolUseID;
    std::optional<std::string> parentAgentID;
    /// 1 for an agent that the conversation itself launched; 0 when it is not known.
    int spawnDepth = 0;

    bool operator==(const Meta&) const = default;
};

/// None for the name of another file.
std::optional<std::string> agentID(std::string_view fromFileName);

/// None for what is no JSON object.
std::optional<Meta> meta(std::string_view fromJSON, std::string_view agentID);

/// What the agent did, by the lines of its conversation. It has succeeded once it ended its turn.
AgentRun run(const Meta& meta, std::span<const std::string_view> lines);

/// The runs that the conversation itself tells of, with what the agents' own files tell of the same ones, then those
/// that only have files: agents that were launched by agents.
std::vector<AgentRun> merged(std::vector<AgentRun> launched, std::vector<AgentRun> fromFiles);

}  // namespace SubagentTrace

}  // namespace orvane
