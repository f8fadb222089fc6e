#include "OrvaneCore/Workspace/WorkspaceModel.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Support/PaneTrees.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

/// "h(a,v(b*,.))": as `tree` reads it, with '*' behind the focused pane.
std::string shape(const PaneNode& node, const Uuid& focus) {
    const auto* split = std::get_if<PaneNode::Split>(&node.value);
    if (split == nullptr) return text(node) + (node.id() == focus ? "*" : "");
    std::string result = split->axis == PaneAxis::horizontal ? "h" : "v";
    for (const PaneNode& child : split->children)
        result += (&child == &split->children.front() ? "(" : ",") + shape(child, focus);
    return result + ")";
}

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

    void open(SurfaceKind kind, char name, bool isPreview = false) {
        model.openSurface(project,
                          {.id = content(name), .kind = kind, .title = std::string(1, name), .isPreview = isPreview});
    }

    /// What is called so: a tab by its title, else a session.
    Uuid id(char name) const {
        for (const SurfaceMeta& meta : model.surfaceMetas.at(project))
            if (meta.title == std::string(1, name)) return meta.id;
        return content(name);
    }

    /// "verb:names": the first name is what is meant, the second the pane, or a '*' for a preview. The verbs are the
    /// kinds of tabs, which open one, the zones of a drop, and those below.
    void act(std::string_view step) {
        const std::string verb(step.substr(0, step.find(':')));
        const std::string names(step.substr(verb.size() + 1));
        const char what = names[0];
        const std::optional<char> where = names.size() > 1 ? std::optional(names[1]) : std::nullopt;
        if (const auto opened = fromRawValue<SurfaceKind>(verb)) return open(*opened, what, where == '*');
        if (const auto zone = fromRawValue<PaneDropZone>(verb))
            return model.movePane(id(what), leaf(*where), *zone, surface);
        const auto kind = fromRawValue<SurfaceKind>(names);
        const auto target = where ? std::optional(leaf(*where)) : std::nullopt;
        const std::map<std::string, std::function<void()>> verbs = {
            {"on", [&] { model.activateSurface(id(what)); }},
            {"close", [&] { model.closeSurface(id(what)); }},
            {"order", [&] { model.moveSurface(id(what), id(*where)); }},
            {"focus", [&] { model.focusPane(leaf(what)); }},
            {"next", [&] { model.focusPane(surface, std::stoi(names)); }},
            {"stack", [&] { model.splitPane(leaf(what), PaneAxis::vertical); }},
            {"hide", [&] { model.hideFromPane(leaf(what)); }},
            {"remove", [&] { model.removePane(leaf(what)); }},
            {"layout", [&] { model.applyLayout(tree(names), surface); }},
            {"place", [&] { model.placeSession(content(what), project, target, {2000, 1000}); }},
            {"select", [&] { model.selectSession(content(what), project); }},
            {"clear", [&] { model.clearSession(content(what)); }},
            {"away", [&] { model.selectProject(model.addProject("/q")); }},
            {"back", [&] { model.selectProject(project); }},
            {"elsewhere", [&] { model.openSurface(model.addProject("/q"), {.id = content('e'), .kind = *kind}); }}};
        verbs.at(verb)();
    }

    /// The panes of W and the titles of the strip, the active one in brackets.
    std::string outcome() const {
        const Uuid shown = id('W');
        std::string result = "none | ";
        if (model.surfaceTrees.contains(shown))
            result = shape(model.surfaceTrees.at(shown), model.focusedPanes.at(shown)) + " | ";
        for (const SurfaceMeta& meta : model.visibleSurfaces(project))
            result += model.activeSurfaceID.at(project) == meta.id ? "[" + meta.title + "]" : meta.title;
        return result;
    }
};

std::optional<Uuid> session(const std::string& name) {
    return name == "-" ? std::nullopt : std::optional(content(name[0]));
}

/// Each row: the panes of W, the steps, the panes and the strip after them, and the session that is selected then.
void expectOutcomes(std::string_view rows) {
    for (const auto& [panes, steps, expected, strip, selected] : table<5>(rows)) {
        Workspace view(panes);
        std::istringstream stream(steps);
        for (std::string step; stream >> step;)
            view.act(step);
        EXPECT_EQ(view.outcome(), expected + " | " + strip) << panes << " | " << steps;
        EXPECT_EQ(view.model.selectedSessionID, session(selected)) << panes << " | " << steps;
        EXPECT_EQ(view.model.selectedProjectID, view.project) << panes << " | " << steps;
    }
}

TEST(WorkspaceModelTest, opensTabs) {
    expectOutcomes(R"(
        # an empty pane of the active workspace takes what fits into a pane
        h(a,v(B,C)) | chat:n | h(a,v(n*,.)) | [W] | - ; A | browser:n | n* | [W] | -
        h(a,B) | plan:n | h(a,n*) | [W] | -
        h(a,b) | chat:n | h(a*,b) | W[n] | - ; A | file:n | .* | W[n] | - ; A | diff:n | .* | W[n] | -
        A | terminal:n | .* | W[n] | - ; A | maestro:n | .* | W[n] | -
        A | maestro:m chat:c | .* | Wm[c] | - ; A | file:m chat:c | .* | Wm[c] | -
        s | elsewhere:chat | s* | [W] | s ; s | elsewhere:file | s* | [W] | s
        # a preview gives way to the next, and frees its pane
        h(a,B) | file:f* diff:d file:g* | h(a*,.) | W[g]d | -
        h(a,B) | file:f* diff:d on:W browser:b* | h(a,b*) | [W]d | -
        h(a,B) | file:f* diff:d on:W browser:b* chat:c* | h(a,c*) | [W]d | -
        # a tab in a pane is activated there, and comes back with its project
        h(a,B) | chat:c file:f on:W focus:a | h(a*,c) | [W]f | a
        h(a,B) | chat:c on:W focus:a file:f | h(a*,c) | W[f] | -
        h(a,B) | chat:c file:f on:W focus:a on:f on:c | h(a,c*) | [W]f | -
        h(a,B) | chat:c file:f on:c away:q back:p | h(a,c*) | [W]f | -)");
}

TEST(WorkspaceModelTest, closesTabsAndPanes) {
    expectOutcomes(R"(
        # what is in a pane leaves it whole
        h(a,B) | file:f on:W chat:n hide:b | h(a,.*) | [W]fn | -
        h(a,B) | file:f on:W chat:n hide:a | h(a,n*) | [W]f | -
        h(a,B) | file:f on:W chat:n remove:b | a* | [W]fn | a ; h(a,B) | file:f on:W chat:n close:n | h(a,.*) | [W]f | -
        h(a,B) | file:f on:W chat:n clear:s | h(a,n*) | [W]f | -
        # the next tab of the strip is shown, of which the chat c is no part; the last workspace is replaced
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:f close:f | h(s*,c) | W[v]d | -
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:d close:d | h(s*,c) | Wf[v] | -
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:W close:f | h(s*,c) | [W]vd | s
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:W close:W | none | [f]cvd | -
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:f close:v | h(s*,c) | W[f]d | -
        h(s,B) | chat:c file:f terminal:v diff:d order:cd order:vd focus:s on:f close:c | h(s*,.) | W[f]vd | -
        A | file:f close:x | .* | W[f] | - ; A | terminal:v file:f close:W close:v | .* | [f]W | -
        h(a,b) | close:W | .* | [W] | - ; h(a,b) | close:W file:f on:W select:a close:f | .* | [W] | a
        # a pane gives its focus to a neighbour
        h(a,v(b,c),d) | remove:a | h(v(b*,c),d) | [W] | b ; h(a,v(b,c),d) | focus:b remove:b | h(a,c*,d) | [W] | c
        h(a,v(b,c),d) | focus:c remove:c | h(a,b*,d) | [W] | b
        h(a,v(b,c),d) | focus:d remove:d | h(a,v(b,c*)) | [W] | c
        h(a,b) | focus:b remove:a | b* | [W] | b ; a | remove:a | .* | [W] | - ; a | remove:x | a* | [W] | a
        # an ended session leaves empty panes in every workspace
        h(a,v(b,C)) | place:ac clear:a | h(.,v(b,.*)) | [W] | -
        h(a,v(b,C)) | place:ac focus:b clear:a | h(.,v(b*,.)) | [W] | b
        A | terminal:w place:a clear:a on:w | .* | W[w] | -)");
}

TEST(WorkspaceModelTest, placesAndSelectsSessions) {
    expectOutcomes(R"(
        h(a,B) | file:f place:n | h(a,n*) | [W]f | n ; h(a,b) | file:f place:n | h(a,n*,b) | [W]f | n
        h(a,b) | place:nb | h(a,n*) | [W] | n ; h(a,B) | place:nx | h(a,n*) | [W] | n
        h(a,B) | place:ab | h(a,a*) | [W] | a
        # the workspace is the active or the first
        A | terminal:v place:s | .* | W[v] | s ; A | terminal:v file:f place:s | s* | [W]vf | s
        h(a,b) | file:f away:q select:b | h(a,b*) | [W]f | b ; h(a,b) | file:f away:q focus:a | h(a*,b) | [W]f | a
        h(a,v(b,c)) | next:1 | h(a,v(b*,c)) | [W] | b ; h(a,v(b,c)) | next:1 next:1 next:1 | h(a*,v(b,c)) | [W] | a
        h(a,v(b,c)) | next:-4 | h(a,v(b,c*)) | [W] | c ; h(a,v(b,c)) | next:300 | h(a*,v(b,c)) | [W] | a
        a | stack:a | v(a,.*) | [W] | - ; a | stack:x | a* | [W] | a)");
}

TEST(WorkspaceModelTest, movesPanesAndKeepsTheFocusWithItsContent) {
    expectOutcomes(R"(
        h(a,v(b,C)) | chat:n file:f terminal:v center:ac | v(b,a*) | [W]nfv | a
        h(a,v(b,C)) | chat:n file:f terminal:v bottom:ab | v(b,a*,n) | [W]fv | a
        h(a,v(b,C)) | chat:n file:f terminal:v leading:na | h(n*,a,b) | [W]fv | -
        h(a,v(b,C)) | chat:n file:f terminal:v center:sb | h(a,v(s*,n)) | [W]fv | s
        h(a,v(b,C)) | chat:n file:f terminal:v center:ax | h(a*,v(b,n)) | [W]fv | a
        # a tab goes only where it fits, and then leaves the strip
        h(a,B) | terminal:v place:s chat:c file:f center:fb top:vb center:Wb top:Wb top:fb | h(a*,.) | Wvc[f] | -
        h(a,B) | terminal:v place:s chat:c file:f on:c center:cb | h(a,c*) | [W]vf | -
        h(a,b,c) | focus:b layout:v(.,h(.,.)) | v(a,h(b*,c)) | [W] | b ; h(A,b) | layout:v(.,.) | v(b*,.) | [W] | b
        h(a,b,c) | focus:c layout:h(.,.) | h(a*,b) | [W] | a ; h(a,b,C) | chat:n layout:h(.,.) | h(a*,b) | [W]n | a)");
}

TEST(WorkspaceModelTest, movesSessionsIntoOtherTabs) {
    Workspace workspace("h(a,b)");
    WorkspaceModel& model = workspace.model;
    model.openSurface(workspace.project, SurfaceMeta::workspace("other"));
    const Uuid other = model.activeSurfaceID.at(workspace.project);
    const PaneSize area{1600, 900};
    const auto shapes = [&] {
        std::string all;
        for (const SurfaceMeta& meta : model.surfaceMetas.at(workspace.project)) {
            all += all.empty() ? "" : " ";
            all += shape(model.surfaceTrees.at(meta.id), model.focusedPanes.at(meta.id));
        }
        return all;
    };
    model.moveToSurface(content('b'), other, area);
    EXPECT_EQ(shapes(), "a* b*") << "into the empty pane";
    EXPECT_EQ(model.activeSurfaceID.at(workspace.project), other) << "the user goes along";
    model.moveToSurface(content('a'), other, area);
    EXPECT_EQ(shapes(), "h(b,a*)") << "the empty tab has gone";
    // Nothing to move, or nowhere to move it.
    model.moveToSurface(content('a'), other, area);
    model.moveToSurface(content('x'), workspace.surface, area);
    const Uuid elsewhere = model.workspaceSurface(model.addProject("/q"));
    model.moveToSurface(content('a'), elsewhere, area);
    EXPECT_EQ(shapes(), "h(b,a*)");

    const auto leaves = model.surfaceTrees.at(other).leafIDs();
    model.swapPanes(leaves[1], leaves[0]);
    EXPECT_EQ(shapes(), "h(a*,b)") << "the user goes along";
    model.swapPanes(leaves[0], Uuid());
    EXPECT_EQ(shapes(), "h(a*,b)");

    model.saveTemplate("mine", other);
    model.removeTemplate(Uuid());
    EXPECT_EQ(model.templates.size(), 1U);
    model.removeTemplate(model.templates.front().id);
    EXPECT_TRUE(model.templates.empty());
}

TEST(WorkspaceModelTest, aProjectStaysSelectedWhileProjectsComeAndGo) {
    WorkspaceModel model;
    std::map<std::string, Uuid> ids;
    for (const char* path : {"/a", "/b", "/c", "/d"})
        ids[path] = model.addProject(path);
    EXPECT_EQ(model.addProject("/b"), ids["/b"]);
    model.placeSession(content('s'), ids["/c"], {}, {});
    model.selectProject(ids["/b"]);
    EXPECT_EQ(model.selectedSessionID, std::nullopt);
    for (const auto& [removed, selected, shown] : table<3>("/a|/b|-; /b|/c|s; /x|/c|s; /d|/c|s")) {
        model.removeProject(ids[removed]);
        EXPECT_EQ(model.selectedProjectID, ids[selected]) << "without " << removed;
        EXPECT_EQ(model.selectedSessionID, session(shown)) << "without " << removed;
    }
    model.toggleCollapsed(ids["/c"]);
    EXPECT_TRUE(model.allCollapsed());
    model.removeProject(ids["/c"]);
    EXPECT_FALSE(model.selectedProjectID || model.selectedSessionID || model.allCollapsed());
    model.toggleCollapsed(ids["/c"]);
    EXPECT_TRUE(model.collapsedProjects.empty());
}

TEST(WorkspaceModelTest, savesWhatOutlivesASession) {
    Workspace view("h(a,v(b,C))");
    for (const char* step : {"chat:n", "file:f", "focus:b"})
        view.act(step);
    view.model.usageCounts["shell"] = 3;
    view.model.toggleCollapsed(view.project);
    view.model.saveTemplate("mine", view.surface);
    view.model.saveTemplate("mine", view.surface);
    ASSERT_EQ(view.model.templates.size(), 1U);
    EXPECT_EQ(text(view.model.templates.front().node), "h(0.5 ., 0.5 v(0.5 ., 0.5 .))");
    const WorkspaceModel restored = WorkspaceModel::restoring(view.model.saved(), "W");
    const PaneNode& panes = restored.surfaceTrees.at(view.surface);
    EXPECT_EQ(shape(panes, restored.focusedPanes.at(view.surface)), "h(.,v(.*,n))");
    EXPECT_EQ(restored.selectedSessionID, std::nullopt);
    EXPECT_EQ(restored.surfaceMetas, view.model.surfaceMetas);
    SavedState before = view.model.saved();
    SavedState after = restored.saved();
    before.surfaces = after.surfaces = std::nullopt;  // the panes are anew
    before.layouts = after.layouts = {};
    EXPECT_TRUE(before == after);
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

TEST(WorkspaceModelTest, tabsFollowTheirWorktreeAndTheTitleOfTheirSession) {
    Workspace view;
    for (const auto& [name, path] : {std::pair('k', "/kept"), {'g', "/gone"}}) {
        view.model.openSurface(view.project, {.id = content(name), .worktreePath = path, .worktreeBranch = "topic"});
    }
    view.model.pruneWorktrees([](const std::string& path) { return path == "/kept"; });
    EXPECT_EQ(view.model.surface(content('k'))->worktreePath, "/kept");
    EXPECT_EQ(view.model.surface(content('k'))->worktreeBranch, "topic");
    EXPECT_EQ(view.model.surface(content('g'))->worktreePath, std::nullopt);
    EXPECT_EQ(view.model.surface(content('g'))->worktreeBranch, std::nullopt);

    const std::string payload = content('s').upperText();
    for (const auto& [name, kind] : {std::pair('c', SurfaceKind::chat), {'p', SurfaceKind::plan}}) {
        view.model.openSurface(
            view.project, {.id = content(name), .kind = kind, .title = "old", .payload = payload, .isAutoTitle = true});
    }
    EXPECT_FALSE(view.model.titleChatSurface(content('x'), "new"));
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), ""));
    EXPECT_TRUE(view.model.titleChatSurface(content('s'), "new"));
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), "new"));
    view.model.renameSurface(content('c'), " \n");
    EXPECT_TRUE(view.model.titleChatSurface(content('s'), "newer"));
    view.model.renameSurface(content('c'), " mine ");
    EXPECT_FALSE(view.model.titleChatSurface(content('s'), "newest"));
    EXPECT_EQ(view.model.surface(content('c'))->title + view.model.surface(content('p'))->title, "mineold");

    view.model.recordChatTranscript(content('x'), {.transcriptPath = "/t/other", .provider = "claude"});
    view.model.recordChatTranscript(content('s'), {.transcriptPath = "/t/1", .provider = "claude"});
    ASSERT_EQ(view.model.surface(content('c'))->chatHistory.size(), 1U);
    EXPECT_EQ(view.model.surface(content('c'))->chatHistory.front().transcriptPath, "/t/1");
    EXPECT_TRUE(view.model.surface(content('p'))->chatHistory.empty());
}

}  // namespace
}  // namespace orvane::testing
