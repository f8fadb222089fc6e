#include <algorithm>
#include <utility>

#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/Support/WallClock.h"
#include "Orvane/Workspace/AppStore.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration closedSessionsInterval = 1s;
constexpr Duration closedSessionsTolerance = 500ms;

}  // namespace

SessionController* AppStore::session(const Uuid& id) const {
    const auto found = std::ranges::find_if(sessions_, [&](const auto& each) { return each->id() == id; });
    return found == sessions_.end() ? nullptr : found->get();
}

std::vector<SessionController*> AppStore::activeSessions() const {
    std::vector<SessionController*> active;
    for (const auto& session : sessions_) {
        if (session->isActive()) active.push_back(session.get());
    }
    return active;
}

SessionController* AppStore::createSession(const SessionRequest& request) {
    const Project* project = workspace_.project(request.project);
    if (project == nullptr || terminationStarted_) return nullptr;
    const auto spec = request.customAgent && services_.customAgent ? services_.customAgent(*request.customAgent)
                                                                   : std::optional<AgentSpec>();
    SessionController::Appearance appearance = request.appearance;
    appearance.userTitle = request.title;
    const auto session = std::make_shared<SessionController>(
        SessionController::Identity{.id = Uuid::random(),
                                    .projectID = request.project,
                                    .kind = request.kind,
                                    .command = request.command,
                                    .projectPath = request.workingDirectory.value_or(project->path),
                                    .projectRoot = project->path,
                                    .startedAt = dateOf(services_.loop.wallTime()),
                                    .agentSpec = spec},
        appearance,
        SessionController::Surroundings{.loop = services_.loop,
                                        .l10n = services_.l10n,
                                        .home = services_.home,
                                        .log = services_.log,
                                        .transcripts = transcriptFiles()});
    session->install(callbacksFor(session));
    sessions_.push_back(session);
    place(*session, request);
    ++remoteRevision_;
    publish({.session = session->id(), .from = {}, .to = std::string(session->status().name())});
    // So late that whatever the program does at once finds a session that has its place; and then what the program
    // was told to call its conversation is known, by which it is resumed.
    if (services_.launcher != nullptr) session->launch(*services_.launcher);
    committed();
    return session.get();
}

/// What is saved names the conversation, so that it is taken up after a restart.
void AppStore::noteConversation(SessionController& session) {
    workspace_.recordChatTranscript(session.id(), {.transcriptPath = session.agent()->transcript()->path().value_or(""),
                                                   .provider = std::string(rawValue(session.identity().kind)),
                                                   .at = dateOf(services_.loop.wallTime())});
    committed();
}

/// Nobody knows where agents keep their files without a home folder.
std::optional<TranscriptWatch::Files> AppStore::transcriptFiles() {
    if (services_.home.empty()) return std::nullopt;
    return TranscriptWatch::Files{.pool = &services_.pool, .bindings = transcriptBindings_, .home = services_.home};
}

void AppStore::place(const SessionController& session, const SessionRequest& request) {
    if (request.origin == Origin::restored) {
        if (!request.targetLeaf) return;
        return workspace_.placeRestored(session.id(), request.project, *request.targetLeaf, interface_.paneArea);
    }
    const auto& spec = session.identity().agentSpec;
    ++workspace_.usageCounts[spec ? spec->id.upperText() : std::string(rawValue(request.kind))];
    clearOverlay();
    workspace_.placeSession(session.id(), request.project, request.targetLeaf, interface_.paneArea);
    recordPeaks();
}

SessionController::Callbacks AppStore::callbacksFor(const std::shared_ptr<SessionController>& session) {
    /// Runs `action(store, session)` while both are there.
    const auto bound = [store = weak_from_this(), weak = std::weak_ptr(session)](auto action) {
        return [store, weak, action = std::move(action)](const auto&... arguments) {
            const auto self = store.lock();
            const auto controller = weak.lock();
            if (self && controller) action(*self, *controller, arguments...);
        };
    };
    return {
        .onChange = bound([](AppStore& self, SessionController& controller, const SessionStatus& from) {
            self.sessionChanged(controller, from);
        }),
        .onTranscriptGrowth = bound([](AppStore& self, SessionController& controller, TranscriptWatch::News news) {
            if (news == TranscriptWatch::News::anotherFile) return self.noteConversation(controller);
            self.scheduleChange();
        }),
        .onSlashCommands =
            bound([](AppStore& self, SessionController& controller, const std::vector<std::string>& commands) {
                auto& known = self.workspace_.knownSlashCommands[std::string(rawValue(controller.identity().kind))];
                if (known == commands) return;
                known = commands;
                self.committed();
            }),
        .onAITitle = bound([](AppStore& self, SessionController& controller, const std::string& title) {
            if (self.workspace_.titleChatSurface(controller.id(), title)) self.committed();
        }),
        .onFocus = bound([](AppStore& self, SessionController& controller) { self.selectSession(controller.id()); }),
        .onHostAttached = bound([](AppStore& self, SessionController&) { self.scheduleChange(); }),
        .onAttention = bound([](AppStore& self, SessionController& controller) {
            if (self.isActive() && self.workspace_.selectedSessionID == controller.id()) {
                controller.clearAttention();
            } else if (self.services_.notify) {
                self.services_.notify(controller);
            }
        }),
        .onOutput = bound([](AppStore& self, SessionController& controller) { self.sessionOutput.emit(controller); }),
        .onNews = bound([](AppStore& self, SessionController& controller, const TerminalNews& news) {
            self.sessionNews.emit(controller, news);
        }),
    };
}

void AppStore::sessionChanged(SessionController& session, const SessionStatus& from) {
    ++remoteRevision_;
    if (from != session.status()) {
        publish(
            {.session = session.id(), .from = std::string(from.name()), .to = std::string(session.status().name())});
    }
    // Whoever has it before them sees how it ends.
    if (session.hasUnseenEnd() && isActive() && workspace_.selectedSessionID == session.id()) session.clearAttention();
    // What has ended does not come back after a restart.
    if (from.isActive() && !session.isActive()) return committed();
    scheduleChange();
}

void AppStore::publish(SessionEvent event) {
    event.revision = remoteRevision_;
    recentEvents_.push_back(event);
    if (recentEvents_.size() > keptEvents) recentEvents_.pop_front();
    sessionEvents.emit(event);
}

void AppStore::clearOverlay() {
    if (const auto overlay = std::exchange(interface_.overlay, std::nullopt)) tally_.raise(featureWord(*overlay));
}

void AppStore::recordPeaks() {
    tally_.recordPeak("projects", static_cast<std::int64_t>(workspace_.projects.size()));
    tally_.recordPeak("sessions", static_cast<std::int64_t>(sessions_.size()));
    tally_.recordPeak("panes", static_cast<std::int64_t>(workspace_.paneCount()));
}

void AppStore::selectSession(const Uuid& id) {
    SessionController* selected = session(id);
    if (selected == nullptr) return;
    clearOverlay();
    workspace_.selectSession(id, selected->identity().projectID);
    selected->clearAttention();
    committed();
}

void AppStore::renameSession(const Uuid& id, const std::string& title) {
    SessionController* renamed = session(id);
    if (renamed == nullptr) return;
    renamed->rename(title);
    committed();
}

void AppStore::requestCloseSession(const Uuid& id) {
    if (session(id) == nullptr) return;
    interface_.sessionPendingClose = id;
    scheduleChange();
}

void AppStore::closeSession(const Uuid& id) {
    if (session(id) == nullptr) return;
    endSession(id);
    committed();
}

void AppStore::endSession(const Uuid& id) {
    const auto found = std::ranges::find_if(sessions_, [&](const auto& each) { return each->id() == id; });
    std::shared_ptr<SessionController> ended = *found;
    ended->terminate();
    tally_.raise("session_close");
    workspace_.clearSession(id);
    std::erase(sessions_, ended);
    if (!closedSessionsTimer_) {
        closedSessionsTimer_ =
            services_.loop.every(closedSessionsInterval, closedSessionsTolerance, [this] { forgetEndedSessions(); });
    }
    if (interface_.sessionPendingClose == id) interface_.sessionPendingClose.reset();
    if (interface_.searchingSessionID == id) interface_.searchingSessionID.reset();
    ++remoteRevision_;
    publish({.session = id, .from = std::string(ended->status().name()), .to = {}});
    closedSessions_.push_back(std::move(ended));
}

/// The number of a process group that ended is given to another one sooner or later, which quitting would then kill.
void AppStore::forgetEndedSessions() {
    std::erase_if(closedSessions_, [](const auto& each) { return !each->isStillTerminating(); });
    if (closedSessions_.empty()) closedSessionsTimer_.reset();
}

}  // namespace orvane
