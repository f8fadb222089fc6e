#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Support/Date.h"

namespace orvane {

/// What Claude Code writes about itself into `~/.claude/sessions/PID.json`.
struct ClaudeSessionStatus {
    /// "idle" is finished, "busy" working, "waiting" needs the user; any other word is unknown.
    SilenceVerdict verdict = SilenceVerdict::unknown;
    /// What it waits for, in its own words ("permission prompt", "input needed"); empty when it does not wait.
    std::string waitingFor;
    Date updatedAt;

    bool operator==(const ClaudeSessionStatus&) const = default;

    /// None for what is no JSON object or has no time.
    static std::optional<ClaudeSessionStatus> parse(std::string_view json);

    /// What it says, unless something has happened since that it does not know of yet: a key that submits or answers,
    /// or a drawing. Claude draws the end of a turn up to a second after it has written it down.
    SilenceVerdict trustedVerdict(Date lastOutput, Date lastAnsweringInput) const;
};

}  // namespace orvane
