#include "OrvaneCore/Agents/StatusDecision.h"

namespace orvane {

namespace {

/// One blank look at the screen does not end a wait.
constexpr int toleratedMisses = 1;

struct Weighed {
    SilenceVerdict verdict = SilenceVerdict::unknown;
    StatusSource source = StatusSource::screen;
};

bool isWaiting(const StatusLook& look) {
    return std::holds_alternative<SessionStatus::Waiting>(look.status.value);
}

/// Whether the title or the status file say so.
bool tells(const StatusLook& look, SilenceVerdict verdict) {
    return look.title == verdict || look.statusFile == verdict;
}

bool stillWaits(const StatusLook& look) {
    if (tells(look, SilenceVerdict::needsUser)) return true;
    if (!look.hasRequest) return false;
    if (look.kind == SessionKind::claude || look.kind == SessionKind::codex) return look.screen.dialogUp;
    // Of the others the screen alone is no proof that a question has gone; a title that speaks is.
    return look.screen.dialogUp || look.title == SilenceVerdict::unknown;
}

/// It tells by itself that it works, and the status says otherwise. That it asks something it may still tell a moment
/// after the answer.
bool isBelied(const StatusLook& look) {
    return !std::holds_alternative<SessionStatus::Working>(look.status.value) && tells(look, SilenceVerdict::working);
}

bool hasReasonToDecide(const StatusLook& look) {
    return look.screen.dialogUp || isBelied(look) || look.hooks.arrived ||
           look.hooks.phase == AgentPhase::awaitingApproval || look.hasNews ||
           look.silence > StatusDecision::silenceThreshold;
}

SilenceVerdict previousVerdict(const SessionStatus& status) {
    if (std::holds_alternative<SessionStatus::Ready>(status.value)) return SilenceVerdict::unknown;
    if (std::holds_alternative<SessionStatus::Working>(status.value)) return SilenceVerdict::working;
    if (std::holds_alternative<SessionStatus::Waiting>(status.value)) return SilenceVerdict::needsUser;
    return SilenceVerdict::finished;
}

/// By its hooks once they have spoken, else by its transcript; the screen comes first in both.
Weighed weighClaudeWithoutTitle(const StatusLook& look) {
    const AgentStatusRule::ScreenEvidence screen{.awaitsUser = look.screen.dialogUp, .isBusy = look.screen.busy};
    const bool byScreen = screen.awaitsUser || screen.isBusy;
    if (!look.hooks.seen) {
        return {.verdict = AgentStatusRule::claudeVerdict(look.agentPhase, screen),
                .source = byScreen ? StatusSource::screen : StatusSource::transcript};
    }
    return {.verdict = AgentStatusRule::reconciledVerdict(look.hooks.phase, screen, previousVerdict(look.status)),
            .source = byScreen ? StatusSource::screen : StatusSource::hooks};
}

Weighed weighClaude(const StatusLook& look) {
    if (look.screen.dialogUp) return {.verdict = SilenceVerdict::needsUser, .source = StatusSource::screen};
    if (look.statusFile != SilenceVerdict::unknown) {
        return {.verdict = look.statusFile, .source = StatusSource::statusFile};
    }
    const Weighed weighed = weighClaudeWithoutTitle(look);
    // The title of an idle Claude is also that of one that asks, so it ends work and no wait.
    const bool overrules = look.title != SilenceVerdict::unknown && weighed.verdict != SilenceVerdict::needsUser;
    return overrules ? Weighed{.verdict = look.title, .source = StatusSource::title} : weighed;
}

/// Title and screen before the transcript, which lags: a dialog is not in the file yet, an interrupt never is.
Weighed weighByTitle(const StatusLook& look) {
    if (look.screen.dialogUp) return {.verdict = SilenceVerdict::needsUser, .source = StatusSource::screen};
    if (look.title != SilenceVerdict::unknown) return {.verdict = look.title, .source = StatusSource::title};
    if (look.screen.busy) return {.verdict = SilenceVerdict::working, .source = StatusSource::screen};
    if (look.agentPhase == AgentPhase::running && look.screen.composerVisible) {
        return {.verdict = SilenceVerdict::finished, .source = StatusSource::screen};
    }
    return {
        .verdict = AgentStatusRule::reconcile(AgentStatusRule::verdict(look.agentPhase), previousVerdict(look.status)),
        .source = StatusSource::transcript};
}

std::optional<SessionStatus> statusOf(SilenceVerdict verdict) {
    switch (verdict) {
        case SilenceVerdict::needsUser:
            return SessionStatus{SessionStatus::Waiting{}};
        case SilenceVerdict::finished:
            return SessionStatus{SessionStatus::Idle{}};
        case SilenceVerdict::working:
            return SessionStatus{SessionStatus::Working{}};
        case SilenceVerdict::unknown:
            return std::nullopt;
    }
    return std::nullopt;
}

/// What a silence means of an agent whose screen matches none of its patterns. They tell of no end of work: a composer
/// on the screen does. Without any pattern the silence itself has to do.
StatusDecision decideQuietCustom(const StatusLook& look) {
    const bool isAtWork = previousVerdict(look.status) == SilenceVerdict::working;
    if (!isAtWork || look.silence <= StatusDecision::silenceThreshold) return {.source = StatusSource::patterns};
    if (look.screen.composerVisible) return {.status = {{SessionStatus::Idle{}}}, .source = StatusSource::screen};
    if (!look.patterns.hasPatterns) return {.status = {{SessionStatus::Ready{}}}, .source = StatusSource::output};
    return {.source = StatusSource::patterns};
}

StatusDecision decideCustom(const StatusLook& look) {
    if (!look.patterns.waitingMatched && !look.patterns.busyMatched) return decideQuietCustom(look);
    const CustomAgentVerdict previous = isWaiting(look) ? CustomAgentVerdict::waiting : CustomAgentVerdict::ready;
    const CustomAgentVerdict verdict = AgentStatusRule::reconciledCustomVerdict(look.patterns, previous);
    const bool waits = verdict == CustomAgentVerdict::waiting;
    return {.status = waits ? SessionStatus{SessionStatus::Waiting{}} : SessionStatus{SessionStatus::Working{}},
            .source = StatusSource::patterns};
}

/// A banner, or a spinner while it starts, does not make a new session working or idle.
StatusDecision decideUntouched(const StatusLook& look) {
    const StatusSource source =
        look.statusFile != SilenceVerdict::unknown ? StatusSource::statusFile : StatusSource::title;
    if (tells(look, SilenceVerdict::needsUser)) {
        return {.status = {{SessionStatus::Waiting{}}}, .source = source, .provesInteraction = true};
    }
    if (look.toldWorkingFor > StatusDecision::silenceThreshold) {
        return {.status = {{SessionStatus::Working{}}}, .source = source, .provesInteraction = true};
    }
    return {.status = {{SessionStatus::Ready{}}}, .source = StatusSource::start};
}

}  // namespace

StatusDecision StatusDecision::decide(const StatusLook& look) {
    if (isWaiting(look)) {
        if (stillWaits(look)) return {};
        // What the agent tells by itself that contradicts the wait is no blank look.
        const bool isContradicted =
            tells(look, SilenceVerdict::working) || (look.hasNews && tells(look, SilenceVerdict::finished));
        const int misses = look.waitingEvidenceMisses + 1;
        if (!isContradicted && misses <= toleratedMisses) return {.waitingEvidenceMisses = misses};
    } else if (!hasReasonToDecide(look)) {
        return {};
    }
    if (!look.userHasInteracted) return decideUntouched(look);
    if (look.kind == SessionKind::custom) return decideCustom(look);
    const Weighed weighed = look.kind == SessionKind::claude ? weighClaude(look) : weighByTitle(look);
    return {.status = statusOf(weighed.verdict), .source = weighed.source};
}

}  // namespace orvane
