#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"

namespace orvane {

/// What the end of a transcript tells about a running session. Absent is what the lines did not tell.
struct TranscriptReading {
    std::optional<std::string> model;           ///< of the newest record that names one
    std::optional<std::int64_t> contextUsed;    ///< tokens in the context at the newest response
    std::optional<std::int64_t> contextWindow;  ///< tokens that fit, where the file tells it
    bool didClearContext = false;               ///< cleared after the newest response: `contextUsed` says nothing
    std::optional<std::string> permissionMode;  ///< Claude's word for it
    std::optional<AgentPhase> phase;
    std::optional<std::string> sessionTitle;       ///< of the newest prompt that makes one
    std::optional<std::string> pendingToolName;    ///< one row, at most 80 characters
    std::optional<std::string> pendingToolTarget;  ///< one row, at most 180 characters
    std::optional<ApprovalPolicy::Request> pendingRequest;

    bool operator==(const TranscriptReading&) const = default;
};

}  // namespace orvane
