#include "Orvane/Workspace/AppStore.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Orvane/StoreFixture.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using AppStoreTest = testing::StoreFixture;

TEST_F(AppStoreTest, FiftyChangesInOneTurnPublishOnce) {
    SessionController& one = session(project());
    loop.runPosted();
    int published = 0;
    int events = 0;
    const auto changes = store->changed.subscribe([&] { ++published; });
    const auto statuses = store->sessionEvents.subscribe([&](const SessionEvent&) { ++events; });
    const auto before = store->remoteRevision();
    for (int change = 0; change < 25; ++change) {
        one.setStatus({SessionStatus::Working{}}, StatusSource::screen);
        one.setStatus({SessionStatus::Working{}}, StatusSource::screen);  // no change
        one.setStatus({SessionStatus::Waiting{}}, StatusSource::screen);
    }
    EXPECT_EQ(published, 0);
    loop.runTurn();
    EXPECT_EQ(published, 1);
    EXPECT_EQ(store->remoteRevision(), before + 50);
    EXPECT_EQ(events, 50);
    EXPECT_EQ(store->recentEvents().back(),
              (SessionEvent{before + 50, one.id(), std::string("working"), std::string("waiting")}));
    loop.runPosted();
    EXPECT_EQ(published, 1);
}

TEST_F(AppStoreTest, AddingARegisteredPathCreatesNothing) {
    const Uuid first = project();
    EXPECT_EQ(project(), first);
    EXPECT_EQ(store->workspace().projects.size(), 1U);
    EXPECT_EQ(store->workspace().surfaceMetas.at(first).size(), 1U);
    EXPECT_EQ(preferences.counts("usage.features"), (PreferencesStore::Counts{{"project_add", 1}}));
}

TEST_F(AppStoreTest, CreatingASessionPlacesSelectsAndCountsIt) {
    const Uuid home = project();
    store->interface().overlay = Overlay::history;
    SessionController& first = session(home);
    SessionController& second = session(home);
    const WorkspaceModel& workspace = store->workspace();
    const PaneNode& tree = workspace.surfaceTrees.at(workspace.activeSurfaceID.at(home));
    EXPECT_THAT(tree.contentIDs(), ElementsAre(first.id(), second.id()));
    EXPECT_EQ(workspace.selectedSessionID, second.id());
    EXPECT_EQ(store->interface().overlay, std::nullopt);
    EXPECT_EQ(workspace.usageCounts.at("shell"), 2);
    EXPECT_EQ(preferences.counts("usage.peaks"),
              (PreferencesStore::Counts{{"projects", 1}, {"sessions", 2}, {"panes", 2}}));
    EXPECT_EQ(preferences.counts("usage.features").at("history"), 1);

    SessionController* restored =
        store->createSession({.kind = SessionKind::shell, .project = home, .origin = AppStore::Origin::restored});
    EXPECT_NE(restored, nullptr);
    EXPECT_EQ(workspace.usageCounts.at("shell"), 2);
    EXPECT_EQ(store->createSession({.project = Uuid::random()}), nullptr);
}

TEST_F(AppStoreTest, ClosingASessionLeavesAnEmptyPaneAndTellsItsEnd) {
    const Uuid home = project();
    const Uuid first = session(home).id();
    const Uuid second = session(home).id();
    store->closeSession(second);
    const WorkspaceModel& workspace = store->workspace();
    const PaneNode& tree = workspace.surfaceTrees.at(workspace.activeSurfaceID.at(home));
    EXPECT_THAT(tree.contentIDs(), ElementsAre(first));
    EXPECT_EQ(tree.leafIDs().size(), 2U);
    EXPECT_EQ(workspace.selectedSessionID, std::nullopt);  // the focus is still on the pane that is empty now
    EXPECT_EQ(store->session(second), nullptr);
    EXPECT_EQ(store->recentEvents().back().to, std::nullopt);

    store->closePane(*tree.leafID(first));
    EXPECT_TRUE(store->sessions().empty());
    EXPECT_EQ(workspace.paneCount(), 1U);
    store->closePane(workspace.surfaceTrees.begin()->second.leafIDs().front());
    EXPECT_EQ(workspace.paneCount(), 1U);
}

TEST_F(AppStoreTest, RemovingAProjectStopsItsSessionsAndNoOthers) {
    const Uuid home = project();
    std::filesystem::create_directory(folder.path() + "/other");
    const Uuid other = store->addProject(folder.path() + "/other");
    SessionController& stays = session(home);
    SessionController& goes = session(other, "echo up; cat");
    ASSERT_TRUE(loop.runUntil([&] { return goes.status().name() == "working"; }));
    const pid_t group = ProcessGroup::of(goes.processId());
    ASSERT_GT(group, 1);
    store->removeProject(other);
    EXPECT_TRUE(loop.runUntil([&] { return !ProcessGroup::isAlive(group); }));
    EXPECT_EQ(store->sessions().size(), 1U);
    EXPECT_TRUE(stays.isActive());
    EXPECT_EQ(store->workspace().selectedProjectID, home);
}

TEST_F(AppStoreTest, SessionsFollowTheirProgram) {
    const Uuid home = project();
    SessionController& good = session(home, "echo hello");
    SessionController& bad = session(home, "exit 3");
    SessionController& killed = session(home, "kill -KILL $$");
    SessionController* lost = store->createSession(
        {.kind = SessionKind::shell, .project = home, .command = "true", .workingDirectory = "/no/such/folder"});
    EXPECT_EQ(lost->status().name(), "failed");
    ASSERT_TRUE(loop.runUntil([&] { return !good.isActive() && !bad.isActive() && !killed.isActive(); }));
    EXPECT_EQ(good.status(), SessionStatus{SessionStatus::Done{}});
    const auto end = [](const SessionController& each) {
        return ProcessEnd::decoding(std::get<SessionStatus::Failed>(each.status().value).exitCode);
    };
    EXPECT_EQ(end(bad), (ProcessEnd{3, {}}));
    EXPECT_EQ(end(killed), (ProcessEnd{{}, SIGKILL}));
    EXPECT_EQ(end(*lost), (ProcessEnd{-1, {}}));
    EXPECT_TRUE(store->activeSessions().empty());
}

TEST_F(AppStoreTest, AttentionIsClearedWhereTheUserIsLookingAndToldElsewhere) {
    const Uuid home = project();
    SessionController& hidden = session(home);
    SessionController& shown = session(home);
    store->becameActive();
    shown.raiseAttention();
    EXPECT_FALSE(shown.needsAttention());
    hidden.raiseAttention();
    EXPECT_TRUE(hidden.needsAttention());
    store->selectSession(hidden.id());
    EXPECT_FALSE(hidden.needsAttention());
    store->resignedActive();
    hidden.raiseAttention();
    EXPECT_TRUE(hidden.needsAttention());
}

TEST_F(AppStoreTest, AnEndIsUnseenUntilSomebodyLooks) {
    const Uuid home = project();
    SessionController& agent =
        *store->createSession({.kind = SessionKind::claude, .project = home, .command = "sleep 60"});
    SessionController& shell = session(home);
    store->becameActive();
    const auto work = [](SessionController& session) {
        session.setStatus({SessionStatus::Working{}}, StatusSource::screen);
        session.setStatus({SessionStatus::Idle{}}, StatusSource::screen);
    };
    work(agent);
    work(shell);
    EXPECT_TRUE(agent.hasUnseenEnd());
    EXPECT_FALSE(agent.needsAttention()) << "nobody has to act";
    EXPECT_FALSE(shell.hasUnseenEnd()) << "a shell is always at an end";
    agent.setStatus({SessionStatus::Ready{}}, StatusSource::screen);
    EXPECT_TRUE(agent.hasUnseenEnd());
    agent.setStatus({SessionStatus::Waiting{}}, StatusSource::screen);
    EXPECT_FALSE(agent.hasUnseenEnd());
    work(agent);
    store->selectSession(agent.id());
    EXPECT_FALSE(agent.hasUnseenEnd());
    work(agent);
    EXPECT_FALSE(agent.hasUnseenEnd()) << "the user watched it";
    store->resignedActive();
    work(agent);
    EXPECT_TRUE(agent.hasUnseenEnd());
}

TEST_F(AppStoreTest, BranchesAreReadWhileActiveOnly) {
    const std::string calls = folder.path("calls");
    std::filesystem::create_directory(folder.path("bin"));
    folder.write("bin/git", "#!/bin/sh\necho call >> '" + calls + "'\necho main\n");
    std::filesystem::permissions(folder.path("bin/git"), std::filesystem::perms::owner_all);
    const auto reads = [&] { return std::ranges::count(readWholeFile(calls, 1000).value_or(""), '\n'); };
    auto reading = std::make_shared<AppStore>(
        AppStore::Services{.loop = loop, .pool = pool, .preferences = preferences, .stateFile = stateFile, .git = [&] {
                               return Git({"PATH=" + folder.path("bin") + ":/usr/bin:/bin"});
                           }});
    const Uuid home = reading->addProject(folder.path());
    loop.advance(60s);
    EXPECT_EQ(reads(), 0);
    reading->becameActive();
    ASSERT_TRUE(loop.runUntil([&] { return reading->gitBranches().contains(home); }));
    EXPECT_EQ(reading->gitBranches().at(home), "main");
    loop.advance(16s);
    ASSERT_TRUE(loop.runUntil([&] { return reads() == 2; }));
    reading->resignedActive();
    loop.advance(60s);
    reading.reset();  // what is still being read finds no store
    EXPECT_EQ(reads(), 2);
}

TEST_F(AppStoreTest, ProjectsTabsAndTreesSurviveARestart) {
    const Uuid home = project();
    store->renameProject(home, "  Home \n");
    store->setProjectCustomColor(home, "#12abEF", AppStore::Save::yes);
    const Uuid surface = store->workspaceSurface(home);
    store->applyLayout(PaneNode::grid(), surface);
    store->focusPane(store->workspace().surfaceTrees.at(surface).leafIDs()[2]);
    session(home);
    store->saveTemplate("mine", surface);
    ASSERT_TRUE(store->flushState().has_value());

    const auto next = makeStore();
    next->load();
    const WorkspaceModel& workspace = next->workspace();
    ASSERT_EQ(workspace.projects, store->workspace().projects);
    EXPECT_EQ(workspace.projects[0].name, "Home");
    EXPECT_EQ(workspace.projects[0].customColorHex, "12ABEF");
    EXPECT_EQ(workspace.selectedProjectID, home);
    const PaneNode& tree = workspace.surfaceTrees.at(surface);
    EXPECT_EQ(tree.leafIDs().size(), 4U);
    EXPECT_TRUE(tree.contentIDs().empty());
    EXPECT_EQ(workspace.focusedPanes.at(surface), tree.leafIDs()[0]);  // where the session went
    EXPECT_EQ(workspace.templates.size(), 1U);
    EXPECT_TRUE(next->sessions().empty());
}

TEST_F(AppStoreTest, AFileThatCannotBeReadStartsEmptyAndIsKept) {
    const std::string path = folder.path() + "/state.json";
    std::ofstream(path) << "{\"projects\": [ broken";
    store->load();
    EXPECT_TRUE(store->workspace().projects.empty());
    project();
    ASSERT_TRUE(store->flushState().has_value());
    int kept = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        if (!entry.path().filename().string().starts_with("state.json.corrupt-2026")) continue;
        ++kept;
        EXPECT_EQ(readWholeFile(entry.path(), 1000), "{\"projects\": [ broken");
    }
    EXPECT_EQ(kept, 1);
    const auto next = makeStore();
    next->load();
    EXPECT_EQ(next->workspace().projects.size(), 1U);
}

TEST_F(AppStoreTest, AskingToQuitTwiceKeepsTheFirstQuestion) {
    using Window = AppStore::Window;
    using QuitReply = AppStore::QuitReply;
    EXPECT_EQ(store->requestQuit(Window::visible), QuitReply::now);
    SessionController& active = session(project());
    EXPECT_EQ(store->requestQuit(Window::none), QuitReply::alert);
    EXPECT_EQ(store->requestQuit(Window::visible), QuitReply::later);
    EXPECT_EQ(store->requestQuit(Window::visible), QuitReply::cancel);
    EXPECT_TRUE(store->interface().quitReplyPending);
    store->answerQuit();
    EXPECT_EQ(store->requestQuit(Window::visible), QuitReply::later);
    store->answerQuit();
    active.setStatus({SessionStatus::Done{}}, StatusSource::screen);
    EXPECT_EQ(store->requestQuit(Window::visible), QuitReply::now);
}

}  // namespace
}  // namespace orvane
