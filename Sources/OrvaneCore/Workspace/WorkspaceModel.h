#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OrvaneCore/Workspace/PaneDropZone.h"
#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneTemplate.h"
#include "OrvaneCore/Workspace/Project.h"
#include "OrvaneCore/Workspace/SavedState.h"
#include "OrvaneCore/Workspace/SurfaceList.h"

namespace orvane {

/// Projects, their tab strips and pane trees, and what is selected: a value that keeps itself consistent. Every
/// operation ignores ids that it does not know. Sessions appear as ids only.
struct WorkspaceModel {
    std::vector<Project> projects;
    std::optional<Uuid> selectedProjectID;
    std::optional<Uuid> selectedSessionID;
    /// The tab strip of each project.
    std::map<Uuid, std::vector<SurfaceMeta>> surfaceMetas;
    /// The pane tree of each surface that owns one.
    std::map<Uuid, PaneNode> surfaceTrees;
    /// The tab shown, by project.
    std::map<Uuid, Uuid> activeSurfaceID;
    /// The focused leaf, by surface.
    std::map<Uuid, Uuid> focusedPanes;
    std::vector<PaneTemplate> templates;
    std::set<Uuid> collapsedProjects;
    std::map<std::string, std::int64_t> usageCounts;
    std::map<std::string, std::vector<std::string>> knownSlashCommands;
    /// Members of the state file that this build does not know.
    boost::json::object otherState;
    /// Title of the workspaces that are made here; the text of "shell.tab.workspace".
    std::string workspaceTitle = "Workspace";

    /// A leaf, and the surface whose tree has it.
    struct Pane {
        Uuid surface;
        Uuid leaf;
        bool operator==(const Pane&) const = default;
    };

    // Projects
    const Project* project(const Uuid& id) const;
    /// The project with exactly this path; made, with a first workspace, when there is none.
    Uuid addProject(const std::string& path);
    /// Drops the project with its tabs and trees.
    void removeProject(const Uuid& id);
    void toggleCollapsed(const Uuid& id);
    bool allCollapsed() const;
    /// Shows a project and gives its focused pane's session the keyboard.
    void selectProject(const Uuid& id);

    // Surfaces
    /// The project that has the surface.
    std::optional<Uuid> projectOfSurface(const Uuid& surface) const;
    const SurfaceMeta* surface(const Uuid& id) const;
    /// The active surface if it is a workspace, else the first workspace, else a fresh one; the nil id for a project
    /// that is not there.
    Uuid workspaceSurface(const Uuid& project);
    /// Adds a surface and makes it active; one that a pane can show goes into an empty pane of the active workspace
    /// when it has one, and is then not in the strip.
    void openSurface(const Uuid& project, SurfaceMeta meta);
    /// Shows a surface: its tab, or the pane that it is in.
    void activateSurface(const Uuid& surface);
    /// Drops a surface; the next tab of the strip, or else the last, is shown in the place of an active one. Sessions
    /// in its panes go on. A project's last workspace is replaced by a fresh one.
    void closeSurface(const Uuid& surface);
    void renameSurface(const Uuid& surface, const std::string& title);
    void moveSurface(const Uuid& surface, const Uuid& before);
    /// Gives the chat tab of a session a title, unless the user named it. Whether a tab changed.
    bool titleChatSurface(const Uuid& session, const std::string& title);
    /// Adds a transcript to the history of the session's chat tabs.
    void recordChatTranscript(const Uuid& session, const ChatHistorySegment& segment);
    /// Takes the worktree from every surface whose worktree is gone.
    void pruneWorktrees(const std::function<bool(const std::string& path)>& isFolder);
    /// The tabs of the strip: those that no pane of the project shows.
    std::vector<SurfaceMeta> visibleSurfaces(const Uuid& project) const;
    /// Takes an embedded surface out of its pane, back into the strip.
    void hideFromPane(const Uuid& leaf);

    // Panes
    std::optional<Pane> paneOfLeaf(const Uuid& leaf) const;
    /// The pane that shows the session or surface; in the active surface of its project when several do.
    std::optional<Pane> paneShowing(const Uuid& content) const;
    std::size_t paneCount() const;
    /// Puts a session into a pane of the project's workspace, the given leaf when there is one, and selects it.
    Pane placeSession(const Uuid& session, const Uuid& project, const std::optional<Uuid>& targetLeaf,
                      const PaneSize& area);
    /// Puts a session that comes back into the pane, or by the free-leaf rule when that is gone or taken. Neither the
    /// focus nor the tab nor the project that shows is changed.
    void placeRestored(const Uuid& session, const Uuid& project, const Uuid& leaf, const PaneSize& area);
    /// Selects a session, shows its project and tab and focuses its pane.
    void selectSession(const Uuid& session, const Uuid& project);
    /// Empties every pane that shows the session; the selection moves to what the focused pane shows.
    void clearSession(const Uuid& session);
    void focusPane(const Uuid& leaf);
    /// Moves the focus `offset` panes on, round the ends.
    void focusPane(const Uuid& surface, int offset);
    /// Halves a pane; the new, empty half takes the focus.
    std::optional<Uuid> splitPane(const Uuid& leaf, PaneAxis axis);
    /// Removes a pane; the last one of a surface is replaced by a fresh empty one. Of a focused pane the focus goes to
    /// its neighbour in the same split.
    void removePane(const Uuid& leaf);
    void resizeSplit(const Uuid& surface, const Uuid& split, const std::vector<double>& fractions);
    /// Gives a workspace another shape. Returns the contents that no pane of it shows any more.
    std::vector<Uuid> applyLayout(const PaneNode& layout, const Uuid& surface);
    /// Takes a session out of the pane that shows it, which goes too, and puts it into another workspace of its
    /// project: where `PanePlacement` finds room. It keeps the focus. A tab that it leaves empty goes as well.
    void moveToSurface(const Uuid& session, const Uuid& surface, const PaneSize& area);
    /// Two panes of one workspace show what the other one did; the focus goes with its content.
    void swapPanes(const Uuid& leaf, const Uuid& other);
    /// Keeps the shape of a workspace under a name; a template of that name is replaced.
    void saveTemplate(const std::string& name, const Uuid& surface);
    void removeTemplate(const Uuid& id);
    /// Drops a content onto a pane. A surface that no pane can show, or of another project, stays where it is.
    void movePane(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const Uuid& surface);

    // The state file
    /// Without the sessions, which only their owner knows.
    SavedState saved() const;
    /// Where a pane is found again in the next run, whose leaves may have other ids.
    struct Slot {
        Uuid surface;
        /// In leaf order.
        std::size_t index = 0;
        bool operator==(const Slot&) const = default;
    };
    std::optional<Slot> slotOfPane(const Uuid& leaf) const;
    /// The leaf at a place of the surface's tree, of the project's workspace when it is not told; none out of range.
    std::optional<Uuid> leafAt(std::size_t index, const std::optional<Uuid>& surface, const Uuid& project);
    /// A session has come back under another id: the chat tabs that are bound to it go along.
    void rebindChats(const Uuid& from, const Uuid& to);
    static WorkspaceModel restoring(SavedState state, const std::string& workspaceTitle);

 private:
    std::vector<SurfaceMeta>* strip(const Uuid& surface);
    std::optional<Pane> emptyPane(const Uuid& project) const;
    void install(const Uuid& project, SavedSurface surface);
    void dropSurface(const Uuid& surface);
    void dropForeignContents(const Uuid& project);
    void replaceTree(const Uuid& surface, PaneNode tree);
    void selectFocusedSession();
};

}  // namespace orvane
