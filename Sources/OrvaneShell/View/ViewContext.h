#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Agents/ToolsManager.h"
#include "Orvane/History/HistoryService.h"
#include "Orvane/Workspace/AppStore.h"
#include "OrvaneShell/View/Keys/KeyBindings.h"
#include "OrvaneShell/View/PaneDrag.h"
#include "OrvaneShell/View/PaneLinks.h"
#include "OrvaneShell/View/PaneSelection.h"
#include "OrvaneShell/View/ViewLayout.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

class TracePanel;

/// What the parts of one view share: the workspace, what only this view remembers, and what its commands can do. Main
/// thread only.
class ViewContext {
 public:
    /// What the view itself does for them.
    struct Actions {
        std::function<void()> requestFrame;
        std::function<void()> detach;
        std::function<void()> stopHost;
        /// Registers the folder and shows it; a folder that cannot be used is told.
        std::function<void(const std::string& typed)> openProject;
        /// Draws, or tells, all that is there anew.
        std::function<void()> repeat;
        /// Opens an address on the user's desktop; false when there is none to be seen from here.
        std::function<bool(const std::string& address)> openLink;
        /// Puts a text into the clipboard of the client's terminal.
        std::function<void(const std::string& text)> copy;
    };

    /// What it shows and changes; all of it outlives the view.
    struct Services {
        AppStore& store;
        ToolsManager& tools;
        CustomAgentStore& agents;
        HistoryService& history;
        PreferencesStore& preferences;
    };

    ViewContext(const Services& services, Actions actions);
    ~ViewContext();

    AppStore& store;
    ToolsManager& tools;
    CustomAgentStore& agents;
    HistoryService& history;
    PreferencesStore& preferences;
    L10n l10n;
    /// The key before a command.
    KeyPattern leader;
    KeyBindings bindings;
    Actions actions;

    // What the last frame showed.
    ViewLayout layout;
    int cols = 80;
    int rows = 24;

    // What this view remembers.
    std::optional<Uuid> zoomedLeaf;
    /// In a terminal too narrow for a side rail the rail shows when it was asked for.
    bool showsNarrowSidebar = false;
    /// Keys of a command of which more are to come.
    KeySequence typed;
    /// All keys are for the program in the focused pane.
    bool isLocked = false;
    /// The first lines that a new user reads, until they type or click.
    bool showsWelcome = false;
    PaneSelection selection;
    /// What the mouse holds.
    std::optional<PaneDrag> drag;
    std::optional<PaneLink> link;
    /// What was searched in histories, the newest last.
    std::vector<std::string> searchTerms;
    std::unique_ptr<ViewOverlay> overlay;
    /// Beside the panes of these sessions.
    std::map<Uuid, std::unique_ptr<TracePanel>> tracePanels;

    /// Opens an overlay in the place of one that is there.
    void open(std::unique_ptr<ViewOverlay> next);
    void close();
    /// A line at the bottom for some seconds.
    void say(std::string line);
    /// `say` for whom a result comes later; it does nothing when the view is gone by then.
    std::function<void(std::string line)> sayLater() const;
    /// Takes the line away when it is still there.
    void unsay(const std::string& line);
    const std::string& notice() const { return notice_; }

    std::optional<Uuid> project() const { return store.workspace().selectedProjectID; }
    /// The tab that is shown by now; the last frame may have been drawn before several keys that came at once.
    std::optional<Uuid> surface() const;
    std::optional<Uuid> focusedLeaf() const;
    /// What the focused pane shows; null when it is empty.
    SessionController* focusedSession() const;
    SessionController* sessionIn(const ViewLayout::Pane& pane) const;
    /// Null when it shows none.
    TracePanel* tracePanel(const Uuid& session) const;
    /// The title of the session of the last run that is still to come back into a pane.
    std::optional<std::string> comingBack(const Uuid& leaf) const;
    bool showsSidebar() const;
    /// The keys of a command as people type them, "C-b ?"; empty when it has none.
    std::string keysOf(std::string_view command) const;
    /// Of this moment and with all panes; that of the last frame may be zoomed, or older than a split a moment ago.
    ViewLayout wholeLayout() const;
    Date now() const;
    /// Starts a session in the focused pane when that is empty, else where there is room; a program that cannot be
    /// started is told.
    void launch(AppStore::SessionRequest request);
    /// Gives the focus to a pane, and its session the keyboard.
    void focus(const Uuid& leaf);

 private:
    std::shared_ptr<ViewContext*> self_ = std::make_shared<ViewContext*>(this);
    std::string notice_;
    Registration noticeTimer_;
};

}  // namespace orvane
