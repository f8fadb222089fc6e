#include <utility>

#include "Orvane/Support/WallClock.h"
#include "Orvane/Workspace/AppStore.h"
#include "Orvane/Workspace/SessionSaving.h"

namespace orvane {

namespace {

/// How long before a shutdown reaches the host it may have reached the sessions.
constexpr Seconds shutdownSpread(3);

void setSlot(RestorableSession& session, const std::optional<WorkspaceModel::Slot>& slot) {
    if (!slot) return;
    session.visibleSlot = slot->index;
    session.surfaceID = slot->surface;
}

}  // namespace

void AppStore::adopt(std::map<Uuid, std::vector<RestorableSession>> sessions) {
    SessionRestorer::PendingByProject pending;
    for (auto& [project, restorable] : sessions) {
        if (workspace_.project(project) == nullptr) continue;
        for (RestorableSession& saved : restorable) {
            const auto leaf =
                saved.visibleSlot ? workspace_.leafAt(*saved.visibleSlot, saved.surfaceID, project) : std::nullopt;
            pending[project].push_back({.saved = std::move(saved), .leaf = leaf.value_or(Uuid())});
        }
    }
    restorer_.load(std::move(pending));
}

/// A session that was in no pane, as when its tab was closed, comes back in none.
void AppStore::startRestored(const Uuid& project, const SessionRestorer::Pending& session) {
    const RestorableSession& saved = session.saved;
    const SessionController* started =
        createSession({.kind = saved.kind,
                       .project = project,
                       .command = saved.command,
                       .title = saved.title,
                       .customAgent = saved.customAgentID,
                       .workingDirectory = saved.workingDirectory,
                       .targetLeaf = saved.visibleSlot ? std::optional(session.leaf) : std::nullopt,
                       .origin = Origin::restored,
                       .appearance = {.tintIndex = saved.tintIndex, .fontSize = saved.fontSize}});
    if (started == nullptr || !saved.sessionID) return;
    workspace_.rebindChats(*saved.sessionID, started->id());
    saveState();
}

std::vector<AppStore::ComingBack> AppStore::comingBack(const Uuid& project) const {
    std::vector<ComingBack> sessions;
    for (const SessionRestorer::Pending& pending : restorer_.comingBack(project)) {
        const RestorableSession& saved = pending.saved;
        const auto spec = saved.customAgentID && services_.customAgent ? services_.customAgent(*saved.customAgentID)
                                                                       : std::optional<AgentSpec>();
        const std::string unnamed = spec ? spec->name : std::string(rawValue(saved.kind));
        sessions.push_back({.title = saved.title.empty() ? unnamed : saved.title, .leaf = pending.leaf});
    }
    return sessions;
}

bool AppStore::isRestorable(const SessionController& session) const {
    if (session.isActive()) return true;
    if (!shutdownAt_ || !SessionSaving::wasEndedFromOutside(session.status())) return false;
    return *shutdownAt_ - session.evidence().since < shutdownSpread;
}

std::map<Uuid, std::vector<RestorableSession>> AppStore::restorableSessions() const {
    std::map<Uuid, std::vector<RestorableSession>> sessions;
    for (const auto& session : sessions_) {
        if (!isRestorable(*session)) continue;
        auto& saved = sessions[session->identity().projectID].emplace_back(SessionSaving::saved(*session));
        if (const auto pane = workspace_.paneShowing(session->id())) setSlot(saved, workspace_.slotOfPane(pane->leaf));
    }
    for (const Project& project : workspace_.projects) {
        for (SessionRestorer::Pending& pending : restorer_.pending(project.id)) {
            setSlot(pending.saved, workspace_.slotOfPane(pending.leaf));
            sessions[project.id].push_back(std::move(pending.saved));
        }
    }
    return sessions;
}

void AppStore::saveState() {
    SavedState state = workspace_.saved();
    state.restorable = sessionsAtEnd_ ? *sessionsAtEnd_ : restorableSessions();
    services_.stateFile.save(state);
}

void AppStore::noteShutdown() {
    if (!shutdownAt_) shutdownAt_ = dateOf(services_.loop.wallTime());
}

/// The sessions are saved before they are told to end, and as they were then whatever is saved afterwards: the next
/// run is to find them.
void AppStore::terminateAllSessions() {
    if (std::exchange(terminationStarted_, true)) return;
    restorer_.stop();
    sessionsAtEnd_ = restorableSessions();
    saveState();
    for (const auto& session : std::vector(sessions_))
        session->terminate();
    for (const auto& shutDown : shutDowns_)
        shutDown();
}

}  // namespace orvane
