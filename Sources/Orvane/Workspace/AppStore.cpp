#include "Orvane/Workspace/AppStore.h"

#include <filesystem>
#include <utility>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration branchInterval = 15s;
constexpr Duration branchTolerance = 3s;

constexpr const char* railHiddenKey = "shell.rail.hidden";

bool isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

}  // namespace

AppStore::AppStore(Services services)
    : services_(std::move(services)),
      tally_(services_.preferences),
      restorer_(
          services_.loop, services_.preferences, tally_, workspace_,
          [this](const Uuid& project, const SessionRestorer::Pending& session) { startRestored(project, session); }) {
    workspace_.workspaceTitle = services_.l10n.text("shell.tab.workspace");
    restoreShell();
}

AppStore::~AppStore() = default;

void AppStore::restoreShell() {
    PreferencesStore& preferences = services_.preferences;
    preferencesWatch_ = preferences.onChange([this](std::string_view key) {
        if (key != railHiddenKey) return;
        interface_.shellCollapse.railHidden = services_.preferences.boolean(railHiddenKey, false);
        scheduleChange();
    });
    interface_.shellCollapse = {.railHidden = preferences.boolean(railHiddenKey, false),
                                .panelHidden = preferences.boolean("shell.panel.hidden", false)};
    const auto tab = fromRawValue<PanelTab>(preferences.string("shell.panel.tab", {}));
    interface_.panelTab = tab.value_or(PanelTab::changes);
}

void AppStore::setRailHidden(bool isHidden) {
    interface_.shellCollapse.railHidden = isHidden;
    services_.preferences.setBoolean(railHiddenKey, isHidden);
    scheduleChange();
}

void AppStore::setTexts(const L10n& l10n) {
    services_.l10n = l10n;
    workspace_.workspaceTitle = l10n.text("shell.tab.workspace");
    for (const auto& session : sessions_)
        session->setTexts(l10n);
    scheduleChange();
}

void AppStore::load() {
    auto state = services_.stateFile.load();
    if (!state) return;
    auto sessions = std::move(state->restorable);
    workspace_ = WorkspaceModel::restoring(std::move(*state), workspace_.workspaceTitle);
    workspace_.pruneWorktrees(isFolder);
    adopt(std::move(sessions));
}

void AppStore::committed() {
    restorer_.noteSelection();
    saveState();
    scheduleChange();
}

void AppStore::scheduleChange() {
    if (std::exchange(sessionChangePending_, true)) return;
    services_.loop.post([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self) return;
        self->sessionChangePending_ = false;
        self->changed.emit();
    });
}

void AppStore::becameActive() {
    branchTimer_ = services_.loop.every(branchInterval, branchTolerance, [this] { refreshBranches(); });
    refreshBranches();
}

void AppStore::resignedActive() {
    branchTimer_.reset();
}

void AppStore::refreshBranches() {
    for (const Project& project : workspace_.projects)
        readBranch(project);
}

void AppStore::readBranch(const Project& project) {
    if (!services_.git || !branchesBeingRead_.insert(project.id).second) return;
    runInBackground(
        services_.pool, services_.loop,
        [git = services_.git(), path = project.path] { return git.currentBranch(path); },
        [weak = weak_from_this(), id = project.id](std::optional<std::string> branch) {
            if (const auto self = weak.lock()) self->noteBranch(id, std::move(branch));
        });
}

void AppStore::noteBranch(const Uuid& project, std::optional<std::string> branch) {
    branchesBeingRead_.erase(project);
    const auto known = gitBranches_.find(project);
    const bool isKnown = known != gitBranches_.end();
    if (workspace_.project(project) == nullptr || (isKnown ? branch == known->second : !branch)) return;
    if (branch) {
        gitBranches_[project] = std::move(*branch);
    } else {
        gitBranches_.erase(known);
    }
    scheduleChange();
}

AppStore::QuitReply AppStore::requestQuit(Window window) {
    if (activeSessions().empty()) return QuitReply::now;
    if (interface_.confirmingQuit) return QuitReply::cancel;
    if (window == Window::none) return QuitReply::alert;
    interface_.quitReplyPending = true;
    interface_.confirmingQuit = true;
    scheduleChange();
    return QuitReply::later;
}

void AppStore::answerQuit() {
    interface_.quitReplyPending = false;
    interface_.confirmingQuit = false;
    scheduleChange();
}

std::vector<std::shared_ptr<SessionController>> AppStore::stoppingSessions() const {
    auto all = sessions_;
    all.insert(all.end(), closedSessions_.begin(), closedSessions_.end());
    return all;
}

}  // namespace orvane
