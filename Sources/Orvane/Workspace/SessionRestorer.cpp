#include "Orvane/Workspace/SessionRestorer.h"

#include "Orvane/Workspace/UsageTally.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration delay = 2s;
constexpr Duration visiblePause = 250ms;
constexpr Duration hiddenPause = 1200ms;

bool isVisible(const SessionRestorer::Pending& session) {
    return session.saved.visibleSlot.has_value();
}

std::vector<Uuid> projectOrder(const WorkspaceModel& workspace) {
    std::vector<Uuid> order;
    order.reserve(workspace.projects.size());
    for (const Project& project : workspace.projects)
        order.push_back(project.id);
    return order;
}

}  // namespace

SessionRestorer::SessionRestorer(MainLoop& loop, PreferencesStore& preferences, UsageTally& tally,
                                 const WorkspaceModel& workspace, Start start)
    : loop_(loop), preferences_(preferences), tally_(tally), workspace_(workspace), start_(std::move(start)) {}

void SessionRestorer::begin() {
    if (std::exchange(hasBegun_, true) || waiting_.empty()) return;
    timer_ = loop_.after(delay, [this] { restore(); });
}

bool SessionRestorer::isWanted() const {
    return preferences_.boolean("restore.enabled", true);
}

void SessionRestorer::restore() {
    const PendingByProject sessions = std::exchange(waiting_, {});
    if (!isWanted()) return;
    prioritized_ = workspace_.selectedProjectID;
    auto plan = RestorePlanner::plan(projectOrder(workspace_), sessions, prioritized_, isVisible);
    immediate_ = std::move(plan.immediate);
    deferred_ = std::move(plan.deferred);
    tally_.raise("session_restore");
    while (!immediate_.empty())
        startFirst(immediate_);
    drain();
}

void SessionRestorer::startFirst(Entries& entries) {
    const auto entry = std::move(entries.front());
    entries.erase(entries.begin());
    start_(entry.projectID, entry.item);
}

void SessionRestorer::drain() {
    if (deferred_.empty()) return;
    const bool isSeen =
        isVisible(deferred_.front().item) && deferred_.front().projectID == workspace_.selectedProjectID;
    timer_ = loop_.after(isSeen ? visiblePause : hiddenPause, [this] { drain(); });
    startFirst(deferred_);
}

void SessionRestorer::noteSelection() {
    if (prioritized_ == workspace_.selectedProjectID) return;
    prioritized_ = workspace_.selectedProjectID;
    if (prioritized_) deferred_ = RestorePlanner::prioritizing(*prioritized_, deferred_);
}

void SessionRestorer::stop() {
    hasBegun_ = true;
    timer_.reset();
}

std::vector<SessionRestorer::Pending> SessionRestorer::pending(const Uuid& project) const {
    std::vector<Pending> sessions;
    const auto waiting = waiting_.find(project);
    if (waiting != waiting_.end()) sessions = waiting->second;
    for (const Entries* entries : {&immediate_, &deferred_}) {
        for (const auto& entry : *entries) {
            if (entry.projectID == project) sessions.push_back(entry.item);
        }
    }
    return sessions;
}

std::vector<SessionRestorer::Pending> SessionRestorer::comingBack(const Uuid& project) const {
    return isWanted() ? pending(project) : std::vector<Pending>();
}

}  // namespace orvane
