#pragma once

#include <array>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What program a session runs. A `custom` one is described by an `AgentSpec`.
enum class SessionKind { claude, codex, gemini, shell, service, custom };

template <>
struct RawValues<SessionKind> {
    static constexpr std::array table = {
        rawValueOf(SessionKind::claude, "claude"),   rawValueOf(SessionKind::codex, "codex"),
        rawValueOf(SessionKind::gemini, "gemini"),   rawValueOf(SessionKind::shell, "shell"),
        rawValueOf(SessionKind::service, "service"), rawValueOf(SessionKind::custom, "custom"),
    };
};

/// Whether the program writes a transcript that we can read.
constexpr bool hasAgentTranscript(SessionKind kind) {
    return kind == SessionKind::claude || kind == SessionKind::codex || kind == SessionKind::gemini;
}

/// Whether the program is an agent, whose status is worked out; shells and services are plain processes.
constexpr bool isAgent(SessionKind kind) {
    return hasAgentTranscript(kind) || kind == SessionKind::custom;
}

}  // namespace orvane
