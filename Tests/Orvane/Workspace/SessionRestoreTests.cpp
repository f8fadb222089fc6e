#include <gmock/gmock.h>
#include <sys/resource.h>

#include <boost/json.hpp>
#include <csignal>
#include <filesystem>

#include "Orvane/StoreFixture.h"
#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class SessionRestoreTest : public testing::StoreFixture {
 protected:
    ~SessionRestoreTest() override {
        if (next != nullptr) next->terminateAllSessions();
    }

    /// A project of this name in a folder of its own, with panes in two columns.
    Uuid projectOf(const std::string& name) {
        std::filesystem::create_directory(folder.path(name));
        const Uuid id = store->addProject(folder.path(name));
        store->applyLayout(PaneNode::twoColumns(), store->workspaceSurface(id));
        return id;
    }

    SessionController& titled(const Uuid& project, const std::string& title, std::optional<Uuid> leaf = {}) {
        return *store->createSession({.kind = SessionKind::service,
                                      .project = project,
                                      .command = "sleep 1000",
                                      .title = title,
                                      .targetLeaf = leaf});
    }

    /// Ends the store's run and begins the next one.
    void restart() {
        if (next != nullptr) store = std::move(next);
        store->terminateAllSessions();
        load();
    }
    void load() {
        ASSERT_TRUE(store->flushState().has_value());
        next = makeStore();
        next->load();
    }

    static std::string titles(const AppStore& of) {
        std::string text;
        for (const auto& session : of.sessions())
            text += session->title();
        return text;
    }
    std::string titles() const { return titles(*next); }

    /// The titles of the sessions in a project's workspace, in leaf order; '.' for an empty pane.
    static std::string panes(const AppStore& of, const Uuid& project) {
        std::string text;
        for (const SurfaceMeta& meta : of.workspace().surfaceMetas.at(project)) {
            const auto tree = of.workspace().surfaceTrees.find(meta.id);
            if (tree == of.workspace().surfaceTrees.end()) continue;
            for (const Uuid& leaf : tree->second.leafIDs()) {
                const auto content = tree->second.contentID(leaf);
                const SessionController* shown = content ? of.session(*content) : nullptr;
                text += shown == nullptr ? "." : shown->title();
            }
            text += "|";
        }
        return text;
    }

    /// The members of the one session in the state file.
    JsonValue savedSession() {
        EXPECT_TRUE(store->flushState().has_value());
        const auto state = Json::parse(folder.read("state.json"));
        const auto& byProject = state->at("restorable").as_object();
        return byProject.empty() ? JsonValue() : byProject.begin()->value().as_array().at(0);
    }

    /// While it is there no file can be written, by root neither.
    class FullDisk {
     public:
        FullDisk() {
            getrlimit(RLIMIT_FSIZE, &before_);
            rlimit none = before_;
            none.rlim_cur = 0;
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &none);
        }
        ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }

     private:
        rlimit before_{};
    };

    std::shared_ptr<AppStore> next;
};

TEST_F(SessionRestoreTest, SessionsComeBackInTheirPanesWhatIsSeenFirst) {
    const Uuid first = projectOf("one");
    const Uuid second = projectOf("two");
    const auto leaves = store->workspace().surfaceTrees.at(store->workspaceSurface(first)).leafIDs();
    titled(first, "a", leaves[1]);
    titled(first, "b", leaves[0]);
    titled(second, "c");
    titled(second, "d");
    store->selectProject(second);
    const auto counts = store->workspace().usageCounts;
    restart();
    next->beginRestore();
    next->beginRestore();
    loop.advance(1999ms);
    EXPECT_EQ(titles(), "");
    loop.advance(1ms);
    EXPECT_EQ(titles(), "cda") << "those in sight at once, and the first of the others";
    loop.advance(1199ms);
    EXPECT_EQ(titles(), "cda");
    loop.advance(1ms);
    EXPECT_EQ(titles(), "cdab");
    loop.advance(10s);
    EXPECT_EQ(titles(), "cdab");
    EXPECT_EQ(panes(*next, first) + panes(*next, second), "ba|cd|");
    EXPECT_EQ(next->workspace().usageCounts, counts);
    EXPECT_EQ(next->workspace().selectedProjectID, second);
    EXPECT_EQ(next->workspace().selectedSessionID, next->sessions()[1]->id()) << "that of the focused pane";
    EXPECT_EQ(preferences.counts("usage.features").at("session_restore"), 1);
    restart();
    next->beginRestore();
    loop.advance(10s);
    EXPECT_EQ(panes(*next, first) + panes(*next, second), "ba|cd|");
}

TEST_F(SessionRestoreTest, TheProjectThatTheUserOpensComesNext) {
    std::vector<Uuid> projects;
    for (const std::string name : {"a", "b", "c"}) {
        projects.push_back(projectOf(name));
        titled(projects.back(), name);
        titled(projects.back(), name + "'");
    }
    store->selectProject(projects[0]);
    restart();
    next->beginRestore();
    loop.advance(2s);
    EXPECT_EQ(titles(), "aa'b");
    next->selectProject(projects[2]);
    loop.advance(1200ms);
    EXPECT_EQ(titles(), "aa'bc");
    loop.advance(250ms);  // in sight now
    EXPECT_EQ(titles(), "aa'bcc'");
    loop.advance(250ms);
    EXPECT_EQ(titles(), "aa'bcc'b'");
    EXPECT_EQ(next->workspace().selectedProjectID, projects[2]);
}

TEST_F(SessionRestoreTest, WithThePreferenceOffThePanesStayEmpty) {
    const Uuid home = projectOf("one");
    titled(home, "a");
    titled(home, "b");
    preferences.setBoolean("restore.enabled", false);
    restart();
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(panes(*next, home), "..|");
    EXPECT_EQ(preferences.counts("usage.features").count("session_restore"), 0U);
    preferences.setBoolean("restore.enabled", true);
    restart();
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(titles(), "") << "forgotten, not put off";
}

TEST_F(SessionRestoreTest, QuittingBeforeAllAreBackLosesNone) {
    const Uuid first = projectOf("one");
    const Uuid second = projectOf("two");
    for (const char* name : {"a", "b"}) {
        titled(first, name);
        titled(second, std::string(name) + "'");
    }
    store->selectProject(first);
    const auto quitAfter = [&](Duration time) {
        restart();
        next->beginRestore();
        loop.advance(time);
        next->renameProject(first, "saved");  // and saved in between
    };
    quitAfter(0s);
    quitAfter(1s);
    quitAfter(2s);
    EXPECT_EQ(titles(), "aba'");
    load();  // as after a kill: nothing was saved at the end
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(panes(*next, first) + panes(*next, second), "ab|a'b'|");
    next->removeProject(second);
    restart();
    next->beginRestore();
    next->removeProject(first);
    loop.advance(60s);
    EXPECT_EQ(titles(), "") << "of a project that was removed in the meantime";
}

TEST_F(SessionRestoreTest, PanesThatChangedInTheMeantime) {
    const Uuid home = projectOf("one");
    titled(home, "a");
    titled(home, "b");
    titled(home, "c");  // halves a pane
    ASSERT_EQ(panes(*store, home), "abc|");
    restart();
    next->beginRestore();
    const WorkspaceModel& workspace = next->workspace();
    const auto leaves = workspace.surfaceTrees.at(workspace.activeSurfaceID.at(home)).leafIDs();
    next->splitPane(leaves[0], PaneAxis::vertical);  // every place behind it is another one now
    next->closePane(leaves[1]);                      // where b was
    next->createSession({.kind = SessionKind::service,
                         .project = home,
                         .command = "sleep 1000",
                         .title = "x",
                         .targetLeaf = leaves[2]});
    loop.advance(60s);
    EXPECT_EQ(panes(*next, home), "abxc|") << "b takes the new pane, c another";
    for (const char title : std::string("abcx"))
        EXPECT_THAT(panes(*next, home), HasSubstr(std::string(1, title)));
    EXPECT_EQ(panes(*next, home).front(), 'a');
    EXPECT_EQ(next->session(*workspace.selectedSessionID)->title(), "x") << "what the user works in";
}

TEST_F(SessionRestoreTest, ASessionWithoutAPaneComesBackWithoutOne) {
    const Uuid home = projectOf("one");
    store->openSurface(home, {.id = Uuid::random(), .kind = SurfaceKind::terminal, .title = "tab"});
    titled(home, "hidden");
    store->closeSurface(store->workspace().activeSurfaceID.at(home));
    store->openSurface(home, {.id = Uuid::random(), .kind = SurfaceKind::terminal, .title = "tab"});
    titled(home, "s");
    store->activateSurface(store->workspace().surfaceMetas.at(home)[0].id);
    ASSERT_EQ(panes(*store, home), "..|s|");
    const Uuid active = store->workspace().activeSurfaceID.at(home);
    restart();
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(panes(*next, home), "..|s|") << "in its own tab, which does not show";
    EXPECT_EQ(titles(), "shidden");
    EXPECT_EQ(next->workspace().activeSurfaceID.at(home), active);
    EXPECT_EQ(next->workspace().selectedSessionID, std::nullopt);
}

TEST_F(SessionRestoreTest, OneThatCannotStartDoesNotHoldTheOthersUp) {
    const Uuid home = projectOf("one");
    const AgentSpec mine{.name = "Mine", .command = "echo mine; sleep 1000"};
    const Uuid agent = *agents.add(mine);
    const Uuid gone = *agents.add({.name = "Gone", .command = "echo gone; sleep 1000"});
    std::filesystem::create_directory(folder.path("unmounted"));
    store->createSession({.kind = SessionKind::shell,
                          .project = home,
                          .command = "sleep 1000",
                          .title = "a",
                          .workingDirectory = folder.path("unmounted")});
    for (const Uuid& id : {agent, gone})
        store->createSession({.kind = SessionKind::custom, .project = home, .customAgent = id});
    agents.remove(gone);
    std::filesystem::remove(folder.path("unmounted"));
    restart();
    next->beginRestore();
    loop.advance(60s);
    ASSERT_EQ(titles(), "aMinecustom");
    EXPECT_EQ(next->sessions()[0]->status().name(), "failed");
    EXPECT_TRUE(next->sessions()[0]->launchFailure().has_value());
    EXPECT_EQ(next->sessions()[1]->identity().agentSpec->id, agent);
    EXPECT_EQ(next->sessions()[2]->identity().command, "echo gone; sleep 1000");
    EXPECT_TRUE(next->sessions()[2]->isActive());
}

TEST_F(SessionRestoreTest, AConversationIsSavedByWhatResumesIt) {
    const Uuid home = projectOf("one");
    const struct {
        SessionKind kind;
        std::optional<std::string> command;
        std::optional<std::string> saved;
    } cases[] = {
        {SessionKind::claude, "claude --resume abc --model opus", "claude --resume 'abc'"},
        {SessionKind::claude, "claude --session-id abc", "claude --resume 'abc'"},
        {SessionKind::codex, R"(codex resume "it's")", R"(codex resume 'it'\''s')"},
        {SessionKind::gemini, "gemini --resume a", "gemini --resume 'a'"},
        {SessionKind::codex, "codex --full-auto", "codex --full-auto"},
        {SessionKind::gemini, std::nullopt, std::nullopt},
        {SessionKind::service, "run --resume x", "run --resume x"},
    };
    for (const auto& each : cases) {
        const Uuid id = store->createSession({.kind = each.kind, .project = home, .command = each.command})->id();
        // Not what its program does, which is not installed.
        store->session(id)->setStatus({SessionStatus::Ready{}}, StatusSource::screen);
        EXPECT_EQ(JSONObject(savedSession()).optionalString("command"), each.saved) << each.command.value_or("-");
        store->closeSession(id);
    }
    EXPECT_EQ(savedSession(), JsonValue()) << "what was closed is gone";
}

TEST_F(SessionRestoreTest, WhatHasEndedStaysAwayUnlessTheSystemEndsToo) {
    const Uuid home = projectOf("one");
    SessionController& done = titled(home, "d");
    SessionController& killed = titled(home, "k");
    ASSERT_NE(savedSession(), JsonValue());
    done.setStatus({SessionStatus::Done{}}, StatusSource::exit);
    killed.setStatus({SessionStatus::Failed{SIGTERM}}, StatusSource::exit);
    EXPECT_EQ(savedSession(), JsonValue()) << "known at once, before any quit";
    loop.advance(2s);
    store->noteShutdown();
    restart();
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(titles(), "k") << "a logout reaches the sessions as soon as the host";
    next->sessions()[0]->setStatus({SessionStatus::Failed{SIGTERM}}, StatusSource::exit);
    restart();
    next->beginRestore();
    loop.advance(60s);
    EXPECT_EQ(titles(), "");
}

TEST_F(SessionRestoreTest, AChatTabFollowsItsSession) {
    const Uuid home = projectOf("one");
    const Uuid session = titled(home, "a").id();
    store->openSurface(home, {.id = Uuid::random(), .kind = SurfaceKind::chat, .payload = session.upperText()});
    restart();
    next->beginRestore();
    loop.advance(60s);
    ASSERT_EQ(next->sessions().size(), 1U);
    EXPECT_NE(next->sessions()[0]->id(), session);
    EXPECT_EQ(next->workspace().surfaceMetas.at(home).back().payload, next->sessions()[0]->id().upperText());
}

TEST_F(SessionRestoreTest, AFullDiskKeepsTheLastGoodStateAndIsToldOnce) {
    std::vector<std::string> errors;
    StateFile full(loop, queue, folder.path("full.json"),
                   [&](const SystemError& error) { errors.push_back(error.message()); });
    full.save({.projects = {{.name = "good", .path = "/p"}}});
    ASSERT_TRUE(full.flush().has_value());
    const std::string good = folder.read("full.json");
    {
        const FullDisk disk;
        for (const char* name : {"x", "y", "z"}) {
            full.save({.projects = {{.name = name, .path = "/p"}}});
            EXPECT_FALSE(full.flush().has_value());
        }
    }
    loop.runPosted();
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_EQ(folder.read("full.json"), good);
    ASSERT_TRUE(full.flush().has_value());
    EXPECT_THAT(folder.read("full.json"), HasSubstr("\"z\""));
    full.giveUp();
    full.save({});
    ASSERT_TRUE(full.flush().has_value());
    EXPECT_THAT(folder.read("full.json"), HasSubstr("\"z\"")) << "another host's file";
}

}  // namespace
}  // namespace orvane
