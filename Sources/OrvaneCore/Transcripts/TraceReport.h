#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane {

/// What an agent and its subagents did in one conversation.
struct TraceReport {
    /// Of the tools that are used most.
    static constexpr int topCount = 10;
    /// Of each list, so many are shown or encoded: of calls the newest, of files and subagents the first.
    static constexpr std::size_t longestList = 500;

    TraceSummary summary;
    /// Below the project's folder without it.
    std::vector<FileTouch> files;
    std::vector<ToolEvent> failures;
    std::vector<ToolEvent> sensitive;
    std::vector<AgentRun> subagents;

    bool operator==(const TraceReport&) const = default;

    /// The runs' calls count too, also those that the events do not hold.
    static TraceReport of(std::vector<ToolEvent> events, std::vector<AgentRun> runs,
                          std::optional<std::string_view> projectPath);

    /// An object of `summary`, `files`, `failures`, `sensitive` and `subagents`, with `counts` of all that there is of
    /// each list. Of no call it tells all that went in and came out.
    JsonValue encode() const;
};

}  // namespace orvane
