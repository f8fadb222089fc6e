#include "OrvaneCore/Agents/AgentStatusRule.h"

namespace orvane::AgentStatusRule {

SilenceVerdict verdict(std::optional<AgentPhase> phase) {
    if (!phase) return SilenceVerdict::unknown;
    switch (*phase) {
        case AgentPhase::running:
            return SilenceVerdict::working;
        case AgentPhase::awaitingApproval:
            return SilenceVerdict::needsUser;
        case AgentPhase::turnEnded:
            return SilenceVerdict::finished;
    }
    return SilenceVerdict::unknown;
}

SilenceVerdict claudeVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen) {
    if (screen.awaitsUser) return SilenceVerdict::needsUser;
    // A tool that runs looks like one that awaits approval in the transcript; without a dialog on screen it runs.
    const bool isAtWork = screen.isBusy || phase == AgentPhase::awaitingApproval;
    return isAtWork ? SilenceVerdict::working : SilenceVerdict::finished;
}

SilenceVerdict hookedClaudeVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen) {
    if (screen.awaitsUser) return SilenceVerdict::needsUser;
    if (screen.isBusy) return SilenceVerdict::working;
    // The hooks lag behind the screen: a turn that they still call running has ended when the screen is quiet.
    return phase == AgentPhase::running ? SilenceVerdict::finished : verdict(phase);
}

SilenceVerdict reconcile(SilenceVerdict observed, SilenceVerdict previous) {
    return observed == SilenceVerdict::unknown ? previous : observed;
}

SilenceVerdict reconciledVerdict(std::optional<AgentPhase> phase, ScreenEvidence screen, SilenceVerdict previous) {
    return reconcile(hookedClaudeVerdict(phase, screen), previous);
}

CustomAgentVerdict customVerdict(PatternEvidence patterns) {
    return reconciledCustomVerdict(patterns, CustomAgentVerdict::ready);
}

CustomAgentVerdict reconciledCustomVerdict(PatternEvidence patterns, CustomAgentVerdict previous) {
    if (!patterns.hasPatterns) return previous;
    if (patterns.waitingMatched) return CustomAgentVerdict::waiting;
    return patterns.busyMatched ? CustomAgentVerdict::working : previous;
}

}  // namespace orvane::AgentStatusRule
