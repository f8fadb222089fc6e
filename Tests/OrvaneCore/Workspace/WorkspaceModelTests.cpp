#include "OrvaneCore/Workspace/WorkspaceModel.h"

#include <gtest/gtest.h>

#include <tuple>

#include "PaneTrees.h"

namespace orvane::testing {
namespace {

/// A model of one selected project, whose workspace "W" has the given panes; the first has the focus.
struct Workspace {
    WorkspaceModel model;
    Uuid project;
    Uuid surface;

    explicit Workspace(std::string_view panes = "A") {
        model.workspaceTitle = "W";
        project = model.addProject("/p");
        surface = model.workspaceSurface(project);
        model.surfaceTrees[surface] = tree(panes);
        model.focusPane(model.surfaceTrees[surface].leafIDs().front());
    }

    /// Opens a tab whose title is the name of its id.
    Uuid open(SurfaceKind kind, char name, bool isPreview = false) {
        model.openSurface(project,
                          {.id = content(name), .kind = kind, .title = std::string(1, name), .isPreview = isPreview});
        return content(name);
    }

    std::string panes() const { return text(model.surfaceTrees.at(surface)); }
    /// The titles of the strip, the active one in brackets.
    std::string strip() const {
        std::string result;
        for (const SurfaceMeta& meta : model.visibleSurfaces(project)) {
            const bool isActive = model.activeSurfaceID.at(project) == meta.id;
            result += isActive ? "[" + meta.title + "]" : meta.title;
        }
        return result;
    }
    Uuid focus() const { return model.focusedPanes.at(surface); }
};

std::optional<Uuid> session(char name) {
    return name == '-' ? std::nullopt : std::optional(content(name));
}

TEST(WorkspaceModelTest, aProjectStaysSelectedWhileProjectsComeAndGo) {
    WorkspaceModel model;
    std::map<std::string, Uuid> ids;
    for (const char* path : {"/a", "/b", "/c", "/d"})
        ids[path] = model.addProject(path);
    EXPECT_EQ(model.addProject("/b"), ids["/b"]);
    EXPECT_EQ(model.projects.size(), 4U);
    EXPECT_EQ(model.paneCount(), 4U);
    model.placeSession(content('s'), ids["/c"], {}, {});
    model.selectProject(ids["/b"]);
    EXPECT_EQ(model.selectedSessionID, std::nullopt);

    const std::tuple<const char*, const char*, char> removals[] = {
        {"/a", "/b", '-'}, {"/b", "/c", 's'}, {"/x", "/c", 's'}, {"/d", "/c", 's'}};
    for (const auto& [removed, selected, selectedSession] : removals) {
        model.removeProject(ids[removed]);
        EXPECT_EQ(model.selectedProjectID, ids[selected]) << "without " << removed;
        EXPECT_EQ(model.selectedSessionID, session(selectedSession)) << "without " << removed;
    }
    model.toggleCollapsed(ids["/c"]);
    EXPECT_TRUE(model.allCollapsed());
    model.removeProject(ids["/c"]);
    EXPECT_EQ(model.selectedProjectID, std::nullopt);
    EXPECT_EQ(model.selectedSessionID, std::nullopt);
    EXPECT_FALSE(model.allCollapsed());
    EXPECT_TRUE(model.surfaceMetas.empty() && model.surfaceTrees.empty() && model.activeSurfaceID.empty() &&
                model.focusedPanes.empty() && model.collapsedProjects.empty());
}

TEST(WorkspaceModelTest, ignoresProjectsThatAreNotThere) {
    WorkspaceModel model;
    const Uuid gone = Uuid::random();
    model.openSurface(gone, {.id = content('f'), .kind = SurfaceKind::file});
    model.placeSession(content('s'), gone, {}, {});
    model.workspaceSurface(gone);
    model.selectSession(content('s'), gone);
    model.selectProject(gone);
    model.toggleCollapsed(gone);
    EXPECT_EQ(model.selectedProjectID, std::nullopt);
    EXPECT_EQ(model.selectedSessionID, std::nullopt);
    EXPECT_TRUE(model.surfaceMetas.empty() && model.surfaceTrees.empty() && model.collapsedProjects.empty());
}

TEST(WorkspaceModelTest, theWorkspaceOfAProjectIsTheActiveTheFirstOrAFreshOne) {
    Workspace view;
    const Uuid second = view.open(SurfaceKind::terminal, 'v');
    EXPECT_EQ(view.model.workspaceSurface(view.project), second);
    view.open(SurfaceKind::file, 'f');
    EXPECT_EQ(view.model.workspaceSurface(view.project), view.surface);
    view.model.closeSurface(view.surface);
    view.model.closeSurface(second);
    EXPECT_EQ(view.strip(), "[f]W") << "a fresh workspace does not take the screen";
}

TEST(WorkspaceModelTest, anEmptyPaneOfTheActiveWorkspaceTakesWhatFitsIntoAPane) {
    const std::tuple<SurfaceKind, const char*, const char*, const char*> cases[] = {
        {SurfaceKind::chat, "h(a,v(B,C))", "h(0.5 a, 0.5 v(0.5 n, 0.5 .))", "[W]"},
        {SurfaceKind::browser, "A", "n", "[W]"},
        {SurfaceKind::plan, "h(a,B)", "h(0.5 a, 0.5 n)", "[W]"},
        {SurfaceKind::chat, "h(a,b)", "h(0.5 a, 0.5 b)", "W[n]"},
        {SurfaceKind::file, "A", ".", "W[n]"},
        {SurfaceKind::diff, "A", ".", "W[n]"},
        {SurfaceKind::terminal, "A", ".", "W[n]"},
        {SurfaceKind::maestro, "A", ".", "W[n]"},
    };
    for (const auto& [kind, start, panes, strip] : cases) {
        Workspace view(start);
        view.open(kind, 'n');
        EXPECT_EQ(view.panes(), panes) << rawValue(kind) << " into " << start;
        EXPECT_EQ(view.strip(), strip) << rawValue(kind) << " into " << start;
        EXPECT_EQ(view.model.surfaceTrees.contains(content('n')), ownsPaneTree(kind));
        if (const auto shown = view.model.paneShowing(content('n'))) {
            EXPECT_EQ(view.focus(), shown->leaf) << start;
        }
    }
    for (const SurfaceKind kind : {SurfaceKind::maestro, SurfaceKind::file}) {
        Workspace view;
        view.open(kind, 'm');
        view.open(SurfaceKind::chat, 'c');
        EXPECT_EQ(view.strip(), "Wm[c]") << "no workspace is active but " << rawValue(kind);
    }
}

TEST(WorkspaceModelTest, whatOpensInAnotherProjectLeavesTheSelectionAlone) {
    Workspace view("s");
    const Uuid other = view.model.addProject("/q");
    for (const SurfaceKind kind : {SurfaceKind::chat, SurfaceKind::file})
        view.model.openSurface(other, {.id = Uuid::random(), .kind = kind});
    EXPECT_EQ(view.model.selectedProjectID, view.project);
    EXPECT_EQ(view.model.selectedSessionID, content('s'));
}

TEST(WorkspaceModelTest, aPreviewGivesWayToTheNext) {
    Workspace view("h(a,B)");
    view.open(SurfaceKind::file, 'f', true);
    view.open(SurfaceKind::diff, 'd');
    view.open(SurfaceKind::file, 'g', true);
    EXPECT_EQ(view.strip(), "W[g]d");
    view.model.activateSurface(view.surface);
    view.open(SurfaceKind::browser, 'b', true);
    EXPECT_EQ(view.panes() + view.strip(), "h(0.5 a, 0.5 b)[W]d");
    view.open(SurfaceKind::chat, 'c', true);
    EXPECT_EQ(view.panes() + view.strip(), "h(0.5 a, 0.5 c)[W]d") << "the pane of the old preview is free again";
}

TEST(WorkspaceModelTest, anEmbeddedSurfaceLeavesItsPaneWhole) {
    using Model = WorkspaceModel;
    const Uuid pane = leaf('b');
    const std::tuple<const char*, std::function<void(Model&)>, const char*, const char*> cases[] = {
        {"hide", [&](Model& model) { model.hideFromPane(pane); }, "h(0.5 a, 0.5 .)", "[W]fn"},
        {"hide a session", [&](Model& model) { model.hideFromPane(leaf('a')); }, "h(0.5 a, 0.5 n)", "[W]f"},
        {"remove its pane", [&](Model& model) { model.removePane(pane); }, "a", "[W]fn"},
        {"close", [&](Model& model) { model.closeSurface(content('n')); }, "h(0.5 a, 0.5 .)", "[W]f"},
        {"clear as a session", [&](Model& model) { model.clearSession(content('s')); }, "h(0.5 a, 0.5 n)", "[W]f"},
    };
    for (const auto& [name, act, panes, strip] : cases) {
        Workspace view("h(a,B)");
        view.open(SurfaceKind::file, 'f');
        view.model.activateSurface(view.surface);
        view.open(SurfaceKind::chat, 'n');
        act(view.model);
        EXPECT_EQ(view.panes(), panes) << name;
        EXPECT_EQ(view.strip(), strip) << name;
    }
}

TEST(WorkspaceModelTest, activatingAnEmbeddedSurfaceFocusesItsPane) {
    Workspace view("h(a,B)");
    view.open(SurfaceKind::chat, 'c');
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt) << "the focused pane shows a surface";
    view.open(SurfaceKind::file, 'f');
    view.model.activateSurface(view.surface);
    view.model.focusPane(leaf('a'));
    EXPECT_EQ(view.model.selectedSessionID, content('a'));
    view.model.activateSurface(content('f'));
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt);
    view.model.activateSurface(content('c'));
    EXPECT_EQ(view.strip(), "[W]f");
    EXPECT_EQ(view.focus(), leaf('b'));
    // A project comes back with what it showed, a surface without a session among it.
    view.model.selectProject(view.model.addProject("/q"));
    view.model.selectProject(view.project);
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt);
}

TEST(WorkspaceModelTest, closingATabShowsTheNextOneOfTheStrip) {
    // The tabs are W f c v d, the chat c is in a pane of W and not in the strip; 'W' names the workspace.
    const std::tuple<char, char, const char*, char> cases[] = {
        {'f', 'f', "W[v]d", '-'}, {'d', 'd', "Wf[v]", '-'},  {'f', 'W', "[W]vd", 's'},  {'W', 'W', "[f]cvd", '-'},
        {'v', 'f', "W[f]d", '-'}, {'c', 'f', "W[f]vd", '-'}, {'x', 'f', "W[f]vd", '-'},
    };
    for (const auto& [closed, active, strip, selected] : cases) {
        Workspace view("h(s,B)");
        view.open(SurfaceKind::chat, 'c');
        for (const auto& [kind, name] : {std::pair(SurfaceKind::file, 'f'), {SurfaceKind::terminal, 'v'}})
            view.open(kind, name);
        view.open(SurfaceKind::diff, 'd');
        view.model.moveSurface(content('c'), content('d'));
        view.model.moveSurface(content('v'), content('d'));
        view.model.focusPane(leaf('s'));
        view.model.activateSurface(active == 'W' ? view.surface : content(active));
        view.model.closeSurface(closed == 'W' ? view.surface : content(closed));
        EXPECT_EQ(view.strip(), strip) << closed << " with " << active << " active";
        EXPECT_EQ(view.model.selectedSessionID, session(selected)) << closed;
    }
}

TEST(WorkspaceModelTest, theLastWorkspaceIsReplacedAndItsSessionsLoseTheirPanes) {
    Workspace view("h(a,b)");
    view.model.closeSurface(view.surface);
    const Uuid fresh = view.model.workspaceSurface(view.project);
    EXPECT_NE(fresh, view.surface);
    EXPECT_EQ(view.strip(), "[W]");
    EXPECT_EQ(text(view.model.surfaceTrees.at(fresh)), ".");
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt);
    // Such a session is selected from the sidebar all the same, and closing another tab does not take it away.
    view.model.selectSession(content('a'), view.project);
    const Uuid other = view.open(SurfaceKind::file, 'f');
    view.model.activateSurface(fresh);
    view.model.selectSession(content('a'), view.project);
    view.model.closeSurface(other);
    EXPECT_EQ(view.model.selectedSessionID, content('a'));
}

TEST(WorkspaceModelTest, placesASessionAndSelectsIt) {
    const std::tuple<const char*, char, const char*> cases[] = {
        {"h(a,B)", '-', "h(0.5 a, 0.5 n)"},
        {"h(a,b)", '-', "h(0.25 a, 0.25 n, 0.5 b)"},
        {"h(a,b)", 'b', "h(0.5 a, 0.5 n)"},
        {"h(a,B)", 'x', "h(0.5 a, 0.5 n)"},
    };
    for (const auto& [start, target, expected] : cases) {
        Workspace view(start);
        view.model.activateSurface(view.open(SurfaceKind::file, 'f'));
        const auto pane = view.model.placeSession(
            content('n'), view.project, target == '-' ? std::nullopt : std::optional(leaf(target)), {2000, 1000});
        EXPECT_EQ(view.panes(), expected) << start << " at " << target;
        EXPECT_EQ(pane, view.model.paneShowing(content('n')));
        EXPECT_EQ(view.focus(), pane.leaf);
        EXPECT_EQ(view.strip(), "[W]f");
        EXPECT_EQ(view.model.selectedSessionID, content('n'));
    }
    Workspace view("h(a,B)");
    const auto again = view.model.placeSession(content('a'), view.project, leaf('b'), {});
    EXPECT_EQ(view.focus(), again.leaf) << "the pane that was asked for, not the other that shows it";
}

TEST(WorkspaceModelTest, selectingASessionShowsItsPaneOfAnotherProject) {
    Workspace view("h(a,b)");
    const Uuid tab = view.open(SurfaceKind::file, 'f');
    const Uuid other = view.model.addProject("/q");
    view.model.selectProject(other);
    view.model.selectSession(content('b'), view.project);
    EXPECT_EQ(view.model.selectedProjectID, view.project);
    EXPECT_EQ(view.strip(), "[W]f");
    EXPECT_EQ(view.focus(), leaf('b'));
    view.model.activateSurface(tab);
    view.model.selectProject(other);
    view.model.focusPane(leaf('a'));
    EXPECT_EQ(view.model.selectedProjectID, view.project);
    EXPECT_EQ(view.model.selectedSessionID, content('a'));
}

TEST(WorkspaceModelTest, aClosedSessionLeavesEmptyPanes) {
    Workspace view("h(a,v(b,a))");
    view.open(SurfaceKind::terminal, 'w');
    view.model.placeSession(content('a'), view.project, {}, {});
    view.model.clearSession(content('a'));
    EXPECT_EQ(view.panes() + " " + text(view.model.surfaceTrees.at(content('w'))), "h(0.5 ., 0.5 v(0.5 b, 0.5 .)) .");
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt);
    view.model.focusPane(leaf('b'));
    view.model.clearSession(content('a'));
    EXPECT_EQ(view.model.selectedSessionID, content('b'));
}

TEST(WorkspaceModelTest, theFocusGoesRound) {
    Workspace view("h(a,v(b,c))");
    const std::pair<int, char> steps[] = {{1, 'b'}, {1, 'c'}, {1, 'a'}, {-1, 'c'}, {-4, 'b'}, {300, 'b'}};
    for (const auto& [offset, expected] : steps) {
        view.model.focusPane(view.surface, offset);
        EXPECT_EQ(view.focus(), leaf(expected)) << offset;
        EXPECT_EQ(view.model.selectedSessionID, content(expected));
    }
}

TEST(WorkspaceModelTest, removingAPane) {
    const std::tuple<const char*, char, char, const char*, char> cases[] = {
        {"h(a,v(b,c),d)", 'a', 'a', "h(0.5 v(0.5 b, 0.5 c), 0.5 d)", 'b'},
        {"h(a,v(b,c),d)", 'b', 'b', "h(0.333333 a, 0.333333 c, 0.333333 d)", 'c'},
        {"h(a,v(b,c),d)", 'c', 'c', "h(0.333333 a, 0.333333 b, 0.333333 d)", 'b'},
        {"h(a,v(b,c),d)", 'd', 'd', "h(0.5 a, 0.5 v(0.5 b, 0.5 c))", 'c'},
        {"h(a,b)", 'a', 'b', "b", 'b'},
        {"a", 'a', 'a', ".", '-'},
        {"a", 'x', 'a', "a", 'a'},
    };
    for (const auto& [start, removed, focused, expected, selected] : cases) {
        Workspace view(start);
        view.model.focusPane(leaf(focused));
        view.model.removePane(leaf(removed));
        EXPECT_EQ(view.panes(), expected) << start << " without " << removed;
        EXPECT_EQ(view.model.selectedSessionID, session(selected)) << start << " without " << removed;
        EXPECT_TRUE(view.model.surfaceTrees.at(view.surface).contains(view.focus())) << start;
    }
}

TEST(WorkspaceModelTest, splittingFocusesTheNewHalf) {
    Workspace view("a");
    const auto fresh = view.model.splitPane(leaf('a'), PaneAxis::vertical);
    EXPECT_EQ(view.panes(), "v(0.5 a, 0.5 .)");
    EXPECT_EQ(view.focus(), fresh);
    EXPECT_EQ(view.model.selectedSessionID, std::nullopt);
    EXPECT_EQ(view.model.splitPane(Uuid::random(), PaneAxis::vertical), std::nullopt);
}

TEST(WorkspaceModelTest, aLayoutKeepsTheFocusWithItsContent) {
    const std::tuple<const char*, char, const char*, const char*, char, std::vector<Uuid>> cases[] = {
        {"h(a,b,c)", 'b', "v(.,h(.,.))", "v(0.5 a, 0.5 h(0.5 b, 0.5 c))", 'b', {}},
        {"h(a,b,c)", 'c', "h(.,.)", "h(0.5 a, 0.5 b)", 'a', {content('c')}},
        {"h(A,b)", 'a', "v(.,.)", "v(0.5 b, 0.5 .)", 'b', {}},
    };
    for (const auto& [start, focused, layout, expected, selected, unplaced] : cases) {
        Workspace view(start);
        view.model.focusPane(leaf(focused));
        EXPECT_EQ(view.model.applyLayout(tree(layout), view.surface), unplaced) << start;
        EXPECT_EQ(view.panes(), expected) << start;
        EXPECT_EQ(view.model.selectedSessionID, session(selected)) << start << " as " << layout;
        EXPECT_EQ(view.model.surfaceTrees.at(view.surface).contentID(view.focus()), session(selected)) << start;
    }
    Workspace view("h(a,b,C)");
    view.open(SurfaceKind::chat, 'n');
    view.model.applyLayout(PaneNode::twoColumns(), view.surface);
    EXPECT_EQ(view.strip(), "[W]n") << "a tab that lost its pane is back in the strip";
    view.model.saveTemplate("mine", view.surface);
    view.model.applyLayout(PaneNode::grid(), view.surface);
    view.model.saveTemplate("mine", view.surface);
    ASSERT_EQ(view.model.templates.size(), 1U);
    EXPECT_EQ(text(view.model.templates.front().node), "v(0.5 h(0.5 ., 0.5 .), 0.5 h(0.5 ., 0.5 .))");
}

TEST(WorkspaceModelTest, aMovedPaneTakesTheFocus) {
    const std::tuple<char, char, PaneDropZone, const char*, const char*> cases[] = {
        {'a', 'c', PaneDropZone::center, "v(0.5 b, 0.5 a)", "[W]nfv"},
        {'a', 'b', PaneDropZone::bottom, "v(0.25 b, 0.25 a, 0.5 n)", "[W]fv"},
        {'n', 'a', PaneDropZone::leading, "h(0.25 n, 0.25 a, 0.5 b)", "[W]fv"},
        {'s', 'b', PaneDropZone::center, "h(0.5 a, 0.5 v(0.5 s, 0.5 n))", "[W]fv"},  // from the sidebar
        {'a', 'x', PaneDropZone::center, "h(0.5 a, 0.5 v(0.5 b, 0.5 n))", "[W]fv"},
    };
    for (const auto& [moved, onto, zone, panes, strip] : cases) {
        Workspace view("h(a,v(b,C))");
        view.open(SurfaceKind::chat, 'n');
        for (const auto& [kind, name] : {std::pair(SurfaceKind::file, 'f'), {SurfaceKind::terminal, 'v'}})
            view.open(kind, name);
        view.model.movePane(content(moved), leaf(onto), zone, view.surface);
        EXPECT_EQ(view.panes(), panes) << moved << " onto " << onto;
        EXPECT_EQ(view.strip(), strip) << moved << " onto " << onto;
        EXPECT_EQ(view.model.surfaceTrees.at(view.surface).contentID(view.focus()), content(moved));
    }
}

TEST(WorkspaceModelTest, aTabGoesOnlyIntoPanesThatCanShowIt) {
    Workspace view("h(a,B)");
    const Uuid second = view.open(SurfaceKind::terminal, 'v');
    view.model.placeSession(content('s'), view.project, {}, {});
    view.open(SurfaceKind::chat, 'c');
    view.open(SurfaceKind::file, 'f');
    EXPECT_EQ(view.strip(), "Wvc[f]");
    const Uuid other = view.model.addProject("/q");
    const Uuid foreign = view.model.workspaceSurface(other);
    for (const auto& [tab, target] : {std::pair(content('f'), view.surface),
                                      {second, view.surface},
                                      {view.surface, view.surface},
                                      {content('c'), foreign}}) {
        for (const PaneDropZone zone : {PaneDropZone::center, PaneDropZone::top})
            view.model.movePane(tab, view.model.surfaceTrees.at(target).leafIDs().back(), zone, target);
        EXPECT_EQ(view.strip(), "Wvc[f]");
        EXPECT_EQ(view.panes(), "h(0.5 a, 0.5 .)");
        EXPECT_EQ(text(view.model.surfaceTrees.at(foreign)), ".");
    }
    view.model.activateSurface(content('c'));
    view.model.movePane(content('c'), leaf('b'), PaneDropZone::center, view.surface);
    EXPECT_EQ(view.strip(), "[W]vf") << "the active tab went into a pane";
    EXPECT_EQ(view.panes(), "h(0.5 a, 0.5 c)");
}

TEST(WorkspaceModelTest, savesWhatOutlivesASession) {
    Workspace view("h(a,v(b,C))");
    view.open(SurfaceKind::chat, 'n');
    view.open(SurfaceKind::file, 'f');
    view.model.focusPane(leaf('b'));
    view.model.usageCounts["shell"] = 3;
    view.model.toggleCollapsed(view.project);
    const WorkspaceModel restored = WorkspaceModel::restoring(view.model.saved(), "W");
    EXPECT_EQ(restored.projects, view.model.projects);
    EXPECT_EQ(restored.selectedProjectID, view.project);
    EXPECT_EQ(restored.collapsedProjects, view.model.collapsedProjects);
    EXPECT_EQ(restored.usageCounts, view.model.usageCounts);
    EXPECT_EQ(restored.surfaceMetas, view.model.surfaceMetas);
    EXPECT_EQ(restored.activeSurfaceID, view.model.activeSurfaceID);
    const PaneNode& panes = restored.surfaceTrees.at(view.surface);
    EXPECT_EQ(text(panes), "h(0.5 ., 0.5 v(0.5 ., 0.5 n))");
    EXPECT_EQ(restored.focusedPanes.at(view.surface), panes.leafIDs().at(1));
    EXPECT_EQ(restored.selectedSessionID, std::nullopt);
}

TEST(WorkspaceModelTest, mendsWhatAStateFileGotWrong) {
    Workspace view("h(a,v(b,C),D)");
    view.open(SurfaceKind::chat, 'n');
    view.open(SurfaceKind::file, 'f');
    SavedState state = view.model.saved();
    auto& surfaces = state.surfaces->at(view.project);
    surfaces.front().node = tree("h(a,v(n,f),D)");  // a session of old, the chat, a tab that fits into no pane
    surfaces.push_back(SavedSurface::workspace("V"));
    surfaces.back().node = tree("v(a,n)");
    state.activeSurfaces[view.project] = content('n');
    const WorkspaceModel restored = WorkspaceModel::restoring(state, "W");
    EXPECT_EQ(text(restored.surfaceTrees.at(view.surface)), "h(0.333333 ., 0.333333 v(0.5 n, 0.5 .), 0.333333 .)");
    const Uuid second = surfaces.back().meta.id;
    EXPECT_EQ(text(restored.surfaceTrees.at(second)), "v(0.5 ., 0.5 n)");
    EXPECT_EQ(restored.paneOfLeaf(leaf('a'))->surface, view.surface);
    EXPECT_FALSE(restored.surfaceTrees.at(second).contains(leaf('a'))) << "a leaf belongs to one tree";
    const auto shown = restored.activeSurfaceID.at(view.project);
    EXPECT_EQ(restored.surfaceTrees.at(shown).contentID(restored.focusedPanes.at(shown)), content('n'));
}

TEST(WorkspaceModelTest, forgetsWorktreesThatAreGone) {
    Workspace view;
    for (const auto& [name, path] : {std::pair('k', "/kept"), {'g', "/gone"}}) {
        view.model.openSurface(
            view.project,
            {.id = content(name), .kind = SurfaceKind::diff, .worktreePath = path, .worktreeBranch = "topic"});
    }
    view.model.pruneWorktrees([](const std::string& path) { return path == "/kept"; });
    EXPECT_EQ(view.model.surface(content('k'))->worktreePath, "/kept");
    EXPECT_EQ(view.model.surface(content('k'))->worktreeBranch, "topic");
    EXPECT_EQ(view.model.surface(content('g'))->worktreePath, std::nullopt);
    EXPECT_EQ(view.model.surface(content('g'))->worktreeBranch, std::nullopt);
}

TEST(WorkspaceModelTest, aChatTabFollowsTheTitleOfItsSessionUntilItIsNamed) {
    Workspace view("a");
    for (const auto& [name, kind] : {std::pair('c', SurfaceKind::chat), {'p', SurfaceKind::plan}}) {
        view.model.openSurface(view.project, {.id = content(name),
                                              .kind = kind,
                                              .title = "old",
                                              .payload = content('s').upperText(),
                                              .isAutoTitle = true});
    }
    EXPECT_FALSE(view.model.titleChatSurface(content('x'), "new"));
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), ""));
    EXPECT_TRUE(view.model.titleChatSurface(content('s'), "new"));
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), "new"));
    view.model.renameSurface(content('c'), " \n");
    EXPECT_TRUE(view.model.titleChatSurface(content('s'), "newer"));
    view.model.renameSurface(content('c'), " mine ");
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), "newest"));
    EXPECT_EQ(view.strip(),
              "W"
              "mine[old]");
}

}  // namespace
}  // namespace orvane::testing
