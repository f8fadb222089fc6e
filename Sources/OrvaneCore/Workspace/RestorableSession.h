#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// A running session as the state file keeps it: enough to start it again.
struct RestorableSession {
    /// The id it had; it comes back with another one.
    std::optional<Uuid> sessionID;
    SessionKind kind = SessionKind::shell;
    /// The name the user gave it; empty when they gave none.
    std::string title;
    /// None for the kind's own.
    std::optional<std::string> command;
    std::optional<int> tintIndex;
    /// In points, above 0.
    double fontSize = 11.0;
    /// The place, in leaf order, of the pane that showed it; none when no pane did.
    std::optional<std::size_t> visibleSlot;
    /// The surface whose tree has that pane; none in files of other builds, which mean the project's workspace.
    std::optional<Uuid> surfaceID;
    std::optional<Uuid> customAgentID;
    /// None for the project's folder.
    std::optional<std::string> workingDirectory;

    bool operator==(const RestorableSession&) const = default;

    JsonValue encode() const;
    /// None without a kind that this build knows; nobody could start it.
    static std::optional<RestorableSession> decode(const JsonValue& json);
};

}  // namespace orvane
