#pragma once

#include <optional>

#include "OrvaneCore/Agents/SessionStatus.h"

namespace orvane {

/// What the screen of an agent says that the user described by patterns.
enum class CustomAgentVerdict { waiting, working, ready };

/// Weighs what is known about an agent that has gone quiet. The transcript and the hooks tell a phase, late or never;
/// the screen shows what is so now.
namespace AgentStatusRule {

struct ScreenEvidence {
    bool awaitsUser = false;
    bool isBusy = false;
};

struct PatternEvidence {
    bool hasPatterns = false;
    bool waitingMatched = false;
    bool busyMatched = false;
};

/// By the phase alone.
SilenceVerdict verdict(std::optional<AgentPhase> phase);

/// For Claude without hooks, whose phase is that of its transcript.
SilenceVerdict claudeVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen);

/// For Claude with hooks, whose phase is theirs.
SilenceVerdict hookedClaudeVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen);

/// What was observed, or the previous verdict when that is unknown.
SilenceVerdict reconcile(SilenceVerdict observed, SilenceVerdict previous);

SilenceVerdict reconciledVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen, SilenceVerdict previous);

CustomAgentVerdict customVerdict(PatternEvidence patterns);

/// As `customVerdict`, but the previous verdict stands where no pattern matches.
CustomAgentVerdict reconciledCustomVerdict(PatternEvidence patterns, CustomAgentVerdict previous);

}  // namespace AgentStatusRule

}  // namespace orvane
