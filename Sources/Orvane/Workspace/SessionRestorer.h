#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "OrvaneCore/Workspace/RestorePlanner.h"
#include "OrvaneCore/Workspace/WorkspaceModel.h"
#include "Platform/MainLoop.h"

namespace orvane {

class PreferencesStore;
class UsageTally;

/// Brings the sessions of the last run back: what the user sees at once, the rest one at a time, so that a dozen
/// agents do not start in the same moment. Main thread only.
class SessionRestorer {
 public:
    /// A session that is not back yet.
    struct Pending {
        RestorableSession saved;
        /// The pane that showed it, found when the state was loaded: its place in leaf order may be another one by the
        /// time the session starts. The nil id when there was no such pane.
        Uuid leaf;

        bool operator==(const Pending&) const = default;
    };
    using PendingByProject = std::map<Uuid, std::vector<Pending>>;
    using Start = std::function<void(const Uuid& project, const Pending& session)>;

    /// What it stands on outlives it. `start` starts a session; when it is called the session is pending no more.
    SessionRestorer(MainLoop& loop, PreferencesStore& preferences, UsageTally& tally, const WorkspaceModel& workspace,
                    Start start);

    void load(PendingByProject sessions) { waiting_ = std::move(sessions); }
    /// Starts the sessions, beginning two seconds from now; with the preference "restore.enabled" off they are
    /// forgotten then. Once.
    void begin();
    /// The selected project may be another one; its sessions come next.
    void noteSelection();
    /// Starts nothing any more. What is pending stays so.
    void stop();
    /// Those of a project, in the order in which they come back.
    std::vector<Pending> pending(const Uuid& project) const;
    /// The same; none when they are not to be started.
    std::vector<Pending> comingBack(const Uuid& project) const;

 private:
    bool isWanted() const;
    void restore();
    void drain();

    using Entries = std::vector<RestorePlanner::Entry<Pending>>;

    /// Takes the first entry out of the list and starts it.
    void startFirst(Entries& entries);

    MainLoop& loop_;
    PreferencesStore& preferences_;
    UsageTally& tally_;
    const WorkspaceModel& workspace_;
    Start start_;
    PendingByProject waiting_;  ///< until the restore has begun
    Entries immediate_;
    Entries deferred_;
    std::optional<Uuid> prioritized_;
    bool hasBegun_ = false;
    Registration timer_;  ///< until the restore, then between two sessions of the drain
};

}  // namespace orvane
