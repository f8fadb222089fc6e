#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Git/Git.h"
#include "Orvane/Support/Signal.h"
#include "Orvane/Workspace/SessionEvent.h"
#include "Orvane/Workspace/SessionRestorer.h"
#include "Orvane/Workspace/StateFile.h"
#include "Orvane/Workspace/UsageTally.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Workspace/InterfaceState.h"
#include "OrvaneCore/Workspace/WorkspaceModel.h"
#include "Platform/BackgroundPool.h"
#include "Platform/MainLoop.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// The one long-lived object of the host: projects, tabs, panes and running sessions, and everything that changes
/// them. Main thread only. Whoever needs it later holds it weakly.
class AppStore : public std::enable_shared_from_this<AppStore> {
 public:
    /// What the store stands on; all of it outlives the store. The functions may be left empty.
    struct Services {
        MainLoop& loop;
        BackgroundPool& pool;
        PreferencesStore& preferences;
        StateFile& stateFile;
        L10n l10n;
        /// The user's home folder, where agents keep their files.
        std::string home = {};
        /// A line for whoever looks into a fault.
        std::function<void(const std::string& line)> log = {};
        /// Starts the programs of sessions; without one a session has none.
        SessionLauncher* launcher = nullptr;
        /// The agent that the user added under this id.
        std::function<std::optional<AgentSpec>(const Uuid&)> customAgent;
        /// The runner of git with the environment of this moment; without one no project has a branch.
        std::function<Git()> git;
        /// Hands a session that wants attention to the notifications.
        std::function<void(SessionController&)> notify;
    };

    explicit AppStore(Services services);
    ~AppStore();
    AppStore(const AppStore&) = delete;
    AppStore& operator=(const AppStore&) = delete;

    /// Takes over what the last run saved and drops what it names that is gone from the disk.
    void load();
    /// The host can be reached: the sessions of the last run come back from now on.
    void beginRestore() { restorer_.begin(); }
    /// A session of the last run that is not back yet: the title it will have, and its pane, the nil id when it has
    /// none.
    struct ComingBack {
        std::string title;
        Uuid leaf;
    };
    /// In the order in which they come.
    std::vector<ComingBack> comingBack(const Uuid& project) const;

    const WorkspaceModel& workspace() const { return workspace_; }
    const std::vector<std::shared_ptr<SessionController>>& sessions() const { return sessions_; }
    SessionController* session(const Uuid& id) const;
    std::vector<SessionController*> activeSessions() const;
    /// The current branch of each project that is in a repository.
    const std::map<Uuid, std::string>& gitBranches() const { return gitBranches_; }
    /// Raised by one with every change of a session.
    std::uint64_t remoteRevision() const { return remoteRevision_; }
    /// What only the interface remembers; views write it directly and call `noteInterfaceChange`.
    InterfaceState& interface() { return interface_; }
    MainLoop& loop() const { return services_.loop; }
    /// For work that blocks.
    BackgroundPool& pool() const { return services_.pool; }
    UsageTally& tally() { return tally_; }
    /// The user has chosen another language.
    void setTexts(const L10n& l10n);

    /// At most once a turn of the loop, whatever number of changes it had.
    Signal<> changed;
    /// At once, for each change of a session.
    Signal<SessionEvent> sessionEvents;
    /// At once, whenever the terminal of a session shows something else; many times in a turn when much is written.
    Signal<SessionController> sessionOutput;
    /// At once: what a program tells beside its output.
    Signal<SessionController, TerminalNews> sessionNews;
    /// Another start of the program asked this one to come to the front.
    Signal<> activationRequested;
    /// The newest events, oldest first, at most `keptEvents`.
    const std::deque<SessionEvent>& recentEvents() const { return recentEvents_; }
    static constexpr std::size_t keptEvents = 256;

    // Projects
    Uuid addProject(const std::string& path);
    void selectProject(const Uuid& id);
    void renameProject(const Uuid& id, const std::string& name);
    void setProjectColor(const Uuid& id, std::int64_t index);
    enum class Save { no, yes };
    /// Without saving while a colour is being dragged through a picker.
    void setProjectCustomColor(const Uuid& id, const std::string& hex, Save save);
    void moveProject(const Uuid& id, const Uuid& before);
    void removeProject(const Uuid& id);
    void toggleCollapsed(const Uuid& id);

    // Sessions
    enum class Origin { launched, restored };
    struct SessionRequest {
        SessionKind kind = SessionKind::shell;
        Uuid project;
        std::optional<std::string> command;
        std::string title;
        std::optional<Uuid> customAgent;
        /// The project's folder when absent.
        std::optional<std::string> workingDirectory;
        /// The pane to show it in; when absent the free-leaf rule chooses, and a restored one is in none.
        std::optional<Uuid> targetLeaf;
        /// A restored one is not counted and takes neither selection nor focus.
        Origin origin = Origin::launched;
        /// Its title is the one above.
        SessionController::Appearance appearance = {};
    };
    /// The only way a session comes to be. None for an unknown project, and once all sessions were told to end.
    SessionController* createSession(const SessionRequest& request);
    void selectSession(const Uuid& id);
    /// A blank title gives the session back its own.
    void renameSession(const Uuid& id, const std::string& title);
    /// Asks the view for a confirmation.
    void requestCloseSession(const Uuid& id);
    /// Stops the session; its pane stays behind, empty.
    void closeSession(const Uuid& id);

    // Surfaces and panes
    /// The workspace of the project that shows, or its first; made when it has none.
    Uuid workspaceSurface(const Uuid& project);
    void openSurface(const Uuid& project, SurfaceMeta meta);
    void activateSurface(const Uuid& surface);
    void closeSurface(const Uuid& surface);
    void renameSurface(const Uuid& surface, const std::string& title);
    void moveSurface(const Uuid& surface, const Uuid& before);
    void hideFromPane(const Uuid& leaf);
    void focusPane(const Uuid& leaf);
    void focusPane(int offset);
    std::optional<Uuid> splitPane(const Uuid& leaf, PaneAxis axis);
    /// Closes the session that the pane shows, and removes the pane.
    void closePane(const Uuid& leaf);
    void resizeSplit(const Uuid& surface, const Uuid& split, const std::vector<double>& fractions);
    /// Returns the contents that found no pane in the new shape.
    std::vector<Uuid> applyLayout(const PaneNode& layout, const Uuid& surface);
    void saveTemplate(const std::string& name, const Uuid& surface);
    void removeTemplate(const Uuid& id);
    /// Takes a session out of its pane and shows it in another workspace of its project.
    void moveToSurface(const Uuid& session, const Uuid& surface);
    void swapPanes(const Uuid& leaf, const Uuid& other);
    void movePane(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const Uuid& surface);

    // Life of the process
    /// A view came to the front: branches are read now and every 15 seconds.
    void becameActive();
    void resignedActive();
    bool isActive() const { return static_cast<bool>(branchTimer_); }
    void noteInterfaceChange() { scheduleChange(); }
    /// Whether the side rail shows, from now on and in later runs.
    void setRailHidden(bool isHidden);

    enum class Window { none, visible };
    enum class QuitReply {
        now,     ///< nothing is active: stop
        later,   ///< the view asks, and tells the answer with `answerQuit`
        alert,   ///< there is no view: the caller asks
        cancel,  ///< the question is being asked already
    };
    QuitReply requestQuit(Window window);
    /// Ends the dialog of the view.
    void answerQuit();
    /// Runs when the sessions are told to end, for services that have processes of their own.
    void onTermination(std::function<void()> shutDown) { shutDowns_.push_back(std::move(shutDown)); }
    /// The system ends: sessions that it reached first, moments ago, are saved as if they ran.
    void noteShutdown();
    /// Saves the sessions for the next run and tells every session and service to end, once.
    void terminateAllSessions();
    /// All sessions, and those closed before whose programs have not ended yet.
    std::vector<std::shared_ptr<SessionController>> stoppingSessions() const;

    void saveState();
    std::expected<void, SystemError> flushState() { return services_.stateFile.flush(); }

 private:
    std::optional<TranscriptWatch::Files> transcriptFiles();
    void noteConversation(SessionController& session);
    SessionController::Callbacks callbacksFor(const std::shared_ptr<SessionController>& session);
    void sessionChanged(SessionController& session, const SessionStatus& from);
    void publish(SessionEvent event);
    void scheduleChange();
    /// After an edit that the state file keeps.
    void committed();
    void adopt(std::map<Uuid, std::vector<RestorableSession>> sessions);
    void startRestored(const Uuid& project, const SessionRestorer::Pending& session);
    void place(const SessionController& session, const SessionRequest& request);
    bool isRestorable(const SessionController& session) const;
    /// By project: those that run, and then those that are not back yet.
    std::map<Uuid, std::vector<RestorableSession>> restorableSessions() const;
    void clearOverlay();
    void recordPeaks();
    void endSession(const Uuid& id);
    void forgetEndedSessions();
    void refreshBranches();
    void readBranch(const Project& project);
    void noteBranch(const Uuid& project, std::optional<std::string> branch);
    void restoreShell();

    Services services_;
    UsageTally tally_;
    WorkspaceModel workspace_;
    SessionRestorer restorer_;
    InterfaceState interface_;
    std::shared_ptr<TranscriptBindings> transcriptBindings_ = std::make_shared<TranscriptBindings>();
    std::vector<std::shared_ptr<SessionController>> sessions_;
    /// Closed, but their programs may still be there; kept so that quitting can end them.
    std::vector<std::shared_ptr<SessionController>> closedSessions_;
    std::map<Uuid, std::string> gitBranches_;
    /// Projects whose git has not answered yet; on a network that is gone it may take its whole time.
    std::set<Uuid> branchesBeingRead_;
    std::deque<SessionEvent> recentEvents_;
    std::vector<std::function<void()>> shutDowns_;
    std::uint64_t remoteRevision_ = 0;
    bool sessionChangePending_ = false;
    bool terminationStarted_ = false;
    std::optional<Date> shutdownAt_;
    /// As they were when they were told to end.
    std::optional<std::map<Uuid, std::vector<RestorableSession>>> sessionsAtEnd_;
    Registration branchTimer_;
    Registration preferencesWatch_;
    Registration closedSessionsTimer_;  ///< while there are any
};

}  // namespace orvane
