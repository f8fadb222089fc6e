#pragma once

#include <array>
#include <optional>

#include "OrvaneCore/Agents/AgentStatusRule.h"
#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What a status was decided by.
enum class StatusSource { start, output, input, screen, title, statusFile, hooks, transcript, patterns, clear, exit };

template <>
struct RawValues<StatusSource> {
    static constexpr std::array table = {
        rawValueOf(StatusSource::start, "start"),       rawValueOf(StatusSource::output, "output"),
        rawValueOf(StatusSource::input, "input"),       rawValueOf(StatusSource::screen, "screen"),
        rawValueOf(StatusSource::title, "title"),       rawValueOf(StatusSource::statusFile, "statusFile"),
        rawValueOf(StatusSource::hooks, "hooks"),       rawValueOf(StatusSource::transcript, "transcript"),
        rawValueOf(StatusSource::patterns, "patterns"), rawValueOf(StatusSource::clear, "clear"),
        rawValueOf(StatusSource::exit, "exit"),
    };
};

/// Everything that is known about an agent in a terminal at one moment.
struct StatusLook {
    SessionKind kind = SessionKind::claude;
    SessionStatus status;
    /// Whether anybody has given it something to do.
    bool userHasInteracted = false;
    /// Whether it is known what a waiting agent asks.
    bool hasRequest = false;
    int waitingEvidenceMisses = 0;
    /// Seconds since it last drew something.
    double silence = 0;

    struct Screen {
        /// A dialog is up that nobody has answered yet.
        bool dialogUp = false;
        bool busy = false;
        bool composerVisible = false;
    } screen;

    struct Hooks {
        bool arrived = false;  ///< since the last look
        bool seen = false;     ///< ever
        std::optional<AgentPhase> phase;
    } hooks;

    /// By its transcript, or by what was typed.
    std::optional<AgentPhase> agentPhase;

    /// What the window's title says; unknown for an agent that does not tell its state there.
    SilenceVerdict title = SilenceVerdict::unknown;
    /// What Claude's own status file says; unknown when it cannot be trusted.
    SilenceVerdict statusFile = SilenceVerdict::unknown;
    /// The title or the status file has just changed what it says.
    bool hasNews = false;
    /// Seconds for which the title or the status file have said "working" without a break.
    double toldWorkingFor = 0;

    AgentStatusRule::PatternEvidence patterns;
};

/// What a look at an agent leads to.
struct StatusDecision {
    /// Longer than this an agent at work does not stay without drawing; seconds.
    static constexpr double silenceThreshold = 6.0;

    /// None: stays as it is.
    std::optional<SessionStatus> status;
    StatusSource source = StatusSource::screen;
    int waitingEvidenceMisses = 0;
    /// It is at work though nobody typed anything: its command line gave it the prompt.
    bool provesInteraction = false;

    bool operator==(const StatusDecision&) const = default;

    static StatusDecision decide(const StatusLook& look);
};

}  // namespace orvane
