#include "Orvane/History/ConversationTrace.h"

#include <utility>

#include "Orvane/History/ConversationFile.h"
#include "OrvaneCore/Transcripts/ClaudeAgentReader.h"

namespace orvane::ConversationTrace {

std::expected<TraceReport, SystemError> read(const std::string& path, TranscriptProvider provider,
                                             const std::string& projectPath, SubagentReader& subagents) {
    const bool isClaude = provider == TranscriptProvider::claude;
    ToolTrace::Reader tools(provider);
    ToolTrace::ClaudeAgentReader agents;
    const auto done =
        ConversationFile::readLines(path, ConversationFile::blockBytes, [&](ConversationFile::Lines lines) {
            for (const std::string_view line : lines) {
                tools.take(line);
                if (isClaude) agents.take(line);
            }
            return true;
        });
    if (!done) return std::unexpected(done.error());
    std::vector<ToolEvent> events = std::move(tools).finish();
    std::vector<AgentRun> runs;
    if (isClaude) runs = SubagentTrace::merged(std::move(agents).finish(events), subagents.runs(path));
    const auto root = projectPath.empty() ? std::nullopt : std::optional<std::string_view>(projectPath);
    return TraceReport::of(std::move(events), std::move(runs), root);
}

}  // namespace orvane::ConversationTrace
