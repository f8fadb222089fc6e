#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/ToolCategory.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// One tool call of an agent.
struct ToolEvent {
    std::string id;
    std::string name;
    ToolCategory category = ToolCategory::other;
    /// One line; ends in "…" when it was cut.
    std::optional<std::string> target;
    /// When it was called, in seconds since 1970.
    std::optional<double> timestamp;
    /// A subagent called it.
    bool isSidechain = false;
    /// Absent while it runs.
    std::optional<bool> succeeded;
    std::optional<double> durationSeconds;
    /// Why it failed, one line.
    std::optional<std::string> error;
    /// The beginning of what went in and of what came out.
    std::optional<std::string> inputDetail;
    std::optional<std::string> outputDetail;
    /// It goes on in the background; its result tells only that it began.
    bool isAsync = false;

    bool operator==(const ToolEvent&) const = default;
};

struct FileTouch {
    std::string path;
    int edits = 0;
    std::optional<double> firstAt;
    std::optional<double> lastAt;

    bool operator==(const FileTouch&) const = default;
};

struct TraceSummary {
    struct ToolCount {
        std::string name;
        int count = 0;
        bool operator==(const ToolCount&) const = default;
    };

    /// Categories that occur.
    std::map<ToolCategory, int> countsByCategory;
    int total = 0;
    int distinctFiles = 0;
    /// Launches of subagents.
    int subagents = 0;
    int sidechainEvents = 0;
    int failures = 0;
    int running = 0;
    /// The most used first, then by name.
    std::vector<ToolCount> topTools;

    bool operator==(const TraceSummary&) const = default;
};

/// A subagent and what it did.
struct AgentRun {
    /// Of the agent; of the call that launched it when that is all that is known.
    std::string id;
    std::optional<std::string> toolUseID;
    std::optional<std::string> agentType;
    std::optional<std::string> description;
    /// Seconds since 1970.
    std::optional<double> startedAt;
    std::optional<double> durationSeconds;
    /// Absent while it runs.
    std::optional<bool> succeeded;
    bool isAsync = false;
    std::vector<ToolEvent> events;

    bool operator==(const AgentRun&) const = default;
};

/// What an agent did, rather than said, by its transcript.
namespace ToolTrace {

using Provider = TranscriptProvider;

/// All calls, in the order of the file. Lines that are cut, malformed or unknown are skipped.
std::vector<ToolEvent> events(std::span<const std::string_view> lines, Provider provider);

/// Reads a file line by line. One thread at a time.
class Reader {
 public:
    explicit Reader(Provider provider);
    ~Reader();
    Reader(Reader&&) noexcept;
    Reader& operator=(Reader&&) noexcept;

    /// The next line of the file.
    void take(std::string_view line);
    std::vector<ToolEvent> finish() &&;

 private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Files that were read or changed, in the order of their first touch.
std::vector<FileTouch> filesTouched(const std::vector<ToolEvent>& events, std::optional<std::string_view> relativeTo);

/// Without ".", ".." and doubled slashes; what is below the root loses the root, the root itself is ".".
std::string normalize(std::string_view path, std::optional<std::string_view> relativeTo);

/// Events that touch keys and secrets or the rules of a build, load something from the net, ask for more rights, or
/// delete.
std::vector<ToolEvent> sensitiveTouches(const std::vector<ToolEvent>& events);

/// Whether a command looks as if it deleted or overwrote something for good. A hint for people, no guard.
bool isDestructiveCommand(std::string_view command);

TraceSummary summarize(const std::vector<ToolEvent>& events, int topCount);

/// The subagents that a conversation of Claude Code launched, with their calls where the lines hold them.
std::vector<AgentRun> claudeAgentRuns(std::span<const std::string_view> lines);

/// What a person reads to judge a call of Claude Code: the command, the change, the new text, the plan. None for an
/// input without any text.
std::optional<std::string> claudeInputDetail(std::string_view name, const TranscriptRecord& input);

}  // namespace ToolTrace

}  // namespace orvane
