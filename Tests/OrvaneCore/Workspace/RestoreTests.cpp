#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "OrvaneCore/Workspace/RestorePlanner.h"
#include "OrvaneCore/Workspace/SavedState.h"
#include "OrvaneCore/Workspace/SurfaceMigration.h"
#include "OrvaneCore/Workspace/WorkspaceModel.h"
#include "Support/PaneTrees.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

TEST(RestorableSessionTest, isReadTolerantlyAndWrittenWithItsKeys) {
    const RestorableSession full{.sessionID = content('s'),
                                 .kind = SessionKind::custom,
                                 .title = "mine",
                                 .command = "it's",
                                 .tintIndex = 3,
                                 .fontSize = 12.5,
                                 .visibleSlot = 2,
                                 .surfaceID = content('w'),
                                 .customAgentID = content('a'),
                                 .workingDirectory = "/w"};
    EXPECT_EQ(RestorableSession::decode(full.encode()), full);
    EXPECT_EQ(Json::write(RestorableSession{.kind = SessionKind::claude, .visibleSlot = 0}.encode()),
              R"({"fontSize":11,"kind":"claude","title":"","visibleSlot":0})");
    const RestorableSession shell;
    const std::pair<const char*, std::optional<RestorableSession>> cases[] = {
        {R"({"kind":"shell"})", shell},
        {R"({"kind":"shell","fontSize":0,"visibleSlot":-1,"tintIndex":"x","command":7,"sessionID":"x"})", shell},
        {R"({"kind":"shell","fontSize":"x","visibleSlot":99999999999,"workingDirectory":null,"new":1})", shell},
        {R"({"kind":"spaceship","title":"t"})", std::nullopt},
        {R"({"title":"t"})", std::nullopt},
        {"7", std::nullopt},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(RestorableSession::decode(*Json::parse(text)), expected) << text;
}

/// Projects and sessions are letters: "a" to "c", of which the upper-case sessions are visible.
std::string planned(const std::string& order, const std::string& sessions, const std::string& selected) {
    std::vector<Uuid> projects;
    for (const char name : order)
        projects.push_back(content(name));
    std::map<Uuid, std::vector<char>> map;
    for (const auto& row : table<2>(sessions)) {
        for (const char session : row[1])
            map[content(row[0][0])].push_back(session);
    }
    const auto plan =
        RestorePlanner::plan(projects, map, selected.empty() ? std::nullopt : std::optional(content(selected[0])),
                             [](char session) { return std::isupper(static_cast<unsigned char>(session)) != 0; });
    std::string text;
    for (const auto& entry : plan.immediate)
        text += entry.item;
    text += " ";
    for (const auto& entry : plan.deferred)
        text += entry.item;
    return text;
}

TEST(RestorePlannerTest, whatTheUserSeesComesFirst) {
    const char* sessions = "a|PqR; b|StU; c|v; x|y";
    const struct {
        const char* order;
        const char* selected;
        const char* immediateThenDeferred;
    } cases[] = {{"abc", "b", "SU tPqRv"},
                 {"abc", "a", "PR qStUv"},
                 {"cba", "c", " vStUPqR"},
                 {"abc", "", " PqRStUv"},
                 {"abc", "x", " PqRStUv"}};
    for (const auto& each : cases)
        EXPECT_EQ(planned(each.order, sessions, each.selected), each.immediateThenDeferred) << each.selected;

    using Entry = RestorePlanner::Entry<int>;
    const std::vector<Entry> entries = {{content('a'), 1}, {content('b'), 2}, {content('a'), 3}, {content('b'), 4}};
    EXPECT_EQ(RestorePlanner::prioritizing(content('b'), entries),
              (std::vector<Entry>{{content('b'), 2}, {content('b'), 4}, {content('a'), 1}, {content('a'), 3}}));
    EXPECT_EQ(RestorePlanner::prioritizing(content('z'), entries), entries);
}

TEST(SurfaceMigrationTest, oneTreeAProjectBecomesAWorkspaceAndGoesBack) {
    const Uuid one = content('p');
    const Uuid two = content('q');
    const std::map<Uuid, PaneNode> layouts = {{one, tree("h(A,B)")}, {two, tree("C")}};
    const auto strips = SurfaceMigration::migrate(layouts, {{one, leaf('b')}, {two, leaf('b')}}, "Arbeit");
    ASSERT_EQ(strips.size(), 2U);
    const SavedSurface& first = strips.at(one).at(0);
    EXPECT_EQ(first.meta.title, "Arbeit");
    EXPECT_EQ(first.meta.kind, SurfaceKind::terminal);
    EXPECT_EQ(first.node, layouts.at(one));
    EXPECT_EQ(first.focusedPane, leaf('b'));
    EXPECT_EQ(strips.at(two).at(0).focusedPane, std::nullopt);
    EXPECT_EQ(SurfaceMigration::legacyLayouts(strips, {}), layouts);

    auto strip = strips.at(one);
    strip.insert(strip.begin(), {.meta = {.id = content('c'), .kind = SurfaceKind::chat}});
    strip.push_back({.meta = {.id = content('d'), .kind = SurfaceKind::terminal}, .node = tree("D")});
    const auto shown = [&](char active) {
        return text(SurfaceMigration::legacyLayouts({{one, strip}}, {{one, content(active)}}).at(one));
    };
    EXPECT_EQ(shown('d'), ".");
    EXPECT_EQ(shown('c'), "h(0.5 ., 0.5 .)") << "a chat has no tree";
    EXPECT_TRUE(SurfaceMigration::legacyLayouts({{one, {strip[0]}}}, {}).empty());
}

TEST(SurfaceMigrationTest, theFocusKeepsItsPlaceInLeafOrder) {
    const PaneNode before = tree("h(A,v(B,C))");
    const PaneNode after = before.template_();
    EXPECT_EQ(SurfaceMigration::focusedPane(leaf('c'), before, after), after.leafIDs()[2]);
    EXPECT_EQ(SurfaceMigration::focusedPane(leaf('c'), before, tree("A")), std::nullopt);
    EXPECT_EQ(SurfaceMigration::focusedPane(leaf('x'), before, after), std::nullopt);
    EXPECT_EQ(SurfaceMigration::focusedPane(std::nullopt, before, after), std::nullopt);
}

TEST(WorkspaceModelRestoreTest, aFileOfTheOldestKindLoadsAndIsSavedWithTabs) {
    const std::string project = content('p').upperText();
    const std::string text = R"({"projects":[{"id":")" + project + R"(","name":"n","path":"/p"}],"layouts":{")" +
                             project + R"(":)" + Json::write(tree("h(a,B)").encode()) + R"(,"x":7}})";
    const auto state = SavedState::decode(*Json::parse(text));
    ASSERT_TRUE(state);
    const SavedState saved = WorkspaceModel::restoring(*state, "W").saved();
    const auto& strip = saved.surfaces->at(content('p'));
    ASSERT_EQ(strip.size(), 1U);
    EXPECT_EQ(strip[0].meta.title, "W");
    EXPECT_EQ(testing::text(strip[0].node), "h(0.5 ., 0.5 .)") << "the session of an earlier run is gone";
    EXPECT_EQ(saved.layouts.at(content('p')), strip[0].node);
    EXPECT_TRUE(saved.encode().as_object().contains("surfaces"));
}

TEST(WorkspaceModelRestoreTest, whatComesBackTakesNeitherFocusNorTab) {
    WorkspaceModel model;
    const Uuid project = model.addProject("/p");
    const Uuid back = model.workspaceSurface(project);
    model.surfaceTrees[back] = tree("h(A,b)");
    model.focusPane(leaf('a'));
    model.openSurface(project, {.id = content('w'), .kind = SurfaceKind::terminal});
    const WorkspaceModel before = model;
    const auto restored = [&](char session, const Uuid& where) {
        model.placeRestored(content(session), project, where, {2000, 1000});
        EXPECT_EQ(model.focusedPanes, before.focusedPanes) << session;
        EXPECT_EQ(model.activeSurfaceID, before.activeSurfaceID) << session;
        return text(model.surfaceTrees.at(back)) + " " + text(model.surfaceTrees.at(content('w')));
    };
    EXPECT_EQ(restored('x', leaf('b')), "h(0.5 x, 0.5 b) .") << "a taken pane";
    EXPECT_EQ(model.selectedSessionID, std::nullopt);
    EXPECT_EQ(restored('y', leaf('z')), "h(0.5 x, 0.5 b) y") << "a pane that is gone";
    EXPECT_EQ(model.selectedSessionID, content('y')) << "the pane that waits for the keyboard";
    EXPECT_EQ(restored('z', Uuid()), "h(0.5 x, 0.5 b) h(0.5 y, 0.5 z)");
    EXPECT_EQ(model.selectedSessionID, content('y'));

    const auto slot = model.slotOfPane(leaf('b'));
    EXPECT_EQ(slot, (WorkspaceModel::Slot{back, 1}));
    EXPECT_EQ(model.leafAt(1, back, project), leaf('b'));
    EXPECT_EQ(model.leafAt(2, back, project), std::nullopt);
    const Uuid second = model.surfaceTrees.at(content('w')).leafIDs()[1];
    EXPECT_EQ(model.leafAt(1, std::nullopt, project), second) << "the workspace that shows";
    EXPECT_EQ(model.leafAt(1, content('n'), project), second) << "a tab that is gone";
}

}  // namespace
}  // namespace orvane::testing
