#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "OrvaneCore/Agents/ClaudeSessionStatus.h"

namespace orvane {

/// The file in which a running Claude Code says what it is doing, `~/.claude/sessions/PID.json`. It is gone when Claude
/// has ended.
class ClaudeSessionFile {
 public:
    explicit ClaudeSessionFile(const std::string& home) : folder_(home + "/.claude/sessions") {}

    /// What it says, when one is there whose process belongs to the session of `leader` (the process that leads the
    /// terminal's session).
    std::optional<ClaudeSessionStatus> read(pid_t leader);

 private:
    std::optional<pid_t> findProcess(pid_t leader) const;

    std::string folder_;
    std::optional<pid_t> process_;
};

}  // namespace orvane
