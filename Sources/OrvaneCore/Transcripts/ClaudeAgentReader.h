#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane::ToolTrace {

/// Finds the subagents that a conversation of Claude Code launched, line by line, so that a file need not be held at
/// once. One thread at a time.
class ClaudeAgentReader {
 public:
    ClaudeAgentReader();
    ClaudeAgentReader(const ClaudeAgentReader&) = delete;
    ClaudeAgentReader& operator=(const ClaudeAgentReader&) = delete;
    ~ClaudeAgentReader();

    /// The next line of the file.
    void take(std::string_view line);
    /// `events` are those of the same lines: they tell how the launches ended.
    std::vector<AgentRun> finish(const std::vector<ToolEvent>& events) &&;

 private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace orvane::ToolTrace
