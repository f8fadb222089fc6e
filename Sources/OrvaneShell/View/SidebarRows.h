#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Orvane/Workspace/AppStore.h"

namespace orvane {

/// A row of the side rail: a project, or below it one of its sessions, or one of the last run that is not back yet.
struct SidebarRow {
    Uuid project;
    std::optional<Uuid> session;
    /// Of a project whose sessions are folded away: how many of them need the user.
    int foldedCalls = 0;
    /// Of a session that is still to come back.
    std::optional<std::string> comingBack;

    bool operator==(const SidebarRow&) const = default;

    /// From top to bottom. Of a project's sessions those that need the user come first, who has waited longest before
    /// the others; the rest keep the order in which they were started. The sessions of a folded project are
    /// left out, unless they are asked for.
    enum class Folded { hidden, shown };
    static std::vector<SidebarRow> of(const AppStore& store, Date now, Folded folded = Folded::hidden);

    /// Whether the session waits for an answer, or has something to tell that nobody has seen.
    static bool needsUser(const SessionController& session);
};

}  // namespace orvane
