#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <variant>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What the system believes about a session.
struct SessionStatus {
    struct Failed {
        /// As the process told it: a wait status (a child that called exit(1) has 256), or -1 when it never started.
        int exitCode = 0;
        bool operator==(const Failed&) const = default;
    };
    struct Ready {
        bool operator==(const Ready&) const = default;
    };
    struct Working {
        bool operator==(const Working&) const = default;
    };
    struct Waiting {
        bool operator==(const Waiting&) const = default;
    };
    struct Idle {
        bool operator==(const Idle&) const = default;
    };
    struct Done {
        bool operator==(const Done&) const = default;
    };

    std::variant<Ready, Working, Waiting, Idle, Done, Failed> value;

    bool operator==(const SessionStatus&) const = default;

    /// The name of the case alone: "ready", "working", "waiting", "idle", "done", "failed".
    std::string_view name() const;
    /// Neither done nor failed.
    bool isActive() const;
};

/// How a process ended, in the terms of people and shells.
struct ProcessEnd {
    std::optional<int> exitCode;
    std::optional<int> signal;

    bool operator==(const ProcessEnd&) const = default;

    /// Takes a wait status apart; a negative one is a start that failed and stays as it is.
    static ProcessEnd decoding(int waitStatus);
};

/// Where an agent stands in its turn, as its transcript or its hooks tell.
enum class AgentPhase { running, awaitingApproval, turnEnded };

/// What a silence of an agent means.
enum class SilenceVerdict { needsUser, finished, working, unknown };

}  // namespace orvane
