#include <gtest/gtest.h>

#include "Orvane/Agents/ScriptedScreen.h"
#include "Orvane/Support/WallClock.h"

namespace orvane::testing {
namespace {

using AgentStatusTest = ScriptedScreenTest;

TEST_F(AgentStatusTest, keepsANewSessionReadyUntilSomebodyUsesIt) {
    for (const SessionKind each : {SessionKind::claude, SessionKind::codex, SessionKind::gemini}) {
        start(each);
        busy();  // a spinner of its start
        pass(20);
        composer();
        look();
        EXPECT_EQ(status(), "ready");
        agent().type("hello\r");
        EXPECT_EQ(decided(), "working by input");
        composer("");
        pass(8);
        EXPECT_EQ(status(), "idle") << rawValue(each);
    }
}

TEST_F(AgentStatusTest, countsKeysThatSubmit) {
    // status before, draft on the screen, keys, status after
    for (const auto& [from, draft, keys, after] :
         std::vector<std::array<const char*, 4>>{{"idle", "", "\r", "idle"},
                                                 {"idle", "do it", "\r", "working"},
                                                 {"idle", "", "do it\r", "working"},
                                                 {"idle", "do it", "x", "idle"},
                                                 {"idle", "do it", "\x1b[B", "idle"}}) {
        startIdle(SessionKind::codex);
        composer(draft);
        pass(2);
        agent().type(keys);
        EXPECT_EQ(status(), after) << from << draft << keys;
        EXPECT_EQ(screen->taken(), keys);
    }
    // Keys in pieces, faster than their echo.
    startIdle(SessionKind::claude);
    for (const char* key : {"g", "o", "\r"})
        agent().type(key);
    EXPECT_EQ(status(), "working");
    // What was sent, or taken back, is no draft for the next Return.
    for (const std::vector<const char*>& keys : {std::vector{"go\r"}, std::vector{"g", "\x7f"}}) {
        startIdle(SessionKind::claude);
        for (const char* key : keys)
            agent().type(key);
        session->setStatus({SessionStatus::Idle{}}, StatusSource::hooks);
        agent().type("\r");
        EXPECT_EQ(status(), "idle");
    }
}

TEST_F(AgentStatusTest, waitsAsSoonAsADialogIsUpAndUntilItIsGone) {
    for (const SessionKind each : {SessionKind::claude, SessionKind::codex, SessionKind::gemini}) {
        startIdle(each);
        notified = 0;
        agent().type("go\r");
        busy();
        look();
        ask("Do you want to proceed?");
        look();
        EXPECT_EQ(decided(), "waiting by screen") << rawValue(each);
        EXPECT_EQ(question(), "Do you want to proceed?");
        EXPECT_TRUE(session->needsAttention());
        EXPECT_EQ(notified, 1);
        const auto id = session->approval().pendingRequestID;
        EXPECT_TRUE(id);
        pass(30);
        EXPECT_EQ(notified, 1);
        EXPECT_EQ(session->approval().pendingRequestID, id);

        draw("");  // it draws anew, and the look falls between
        look();
        EXPECT_EQ(status(), "waiting");
        ask("Do you want to proceed?");
        look();
        ask("Do you want to push?");
        look();
        EXPECT_EQ(notified, 2);
        EXPECT_NE(session->approval().pendingRequestID, id);
        agent().type("1");
        EXPECT_EQ(decided(), "working by input");
        EXPECT_FALSE(session->needsAttention());
        EXPECT_EQ(question(), "");
        look();  // still drawn
        EXPECT_EQ(status(), "working");
        busy();
        look();
        EXPECT_EQ(status(), "working");
        ask("Do you want to push?");  // the same again
        pass(3);
        EXPECT_EQ(status(), "waiting");
        composer("");
        pass(8);
        EXPECT_EQ(status(), each == SessionKind::gemini ? "waiting" : "idle") << rawValue(each);
    }
}

TEST_F(AgentStatusTest, takesAnAnswerThatIsFasterThanItsLook) {
    startIdle(SessionKind::claude);
    agent().type("go\r");
    pass(1);
    ask("Do you want to proceed?");
    pass(0.35);
    ASSERT_TRUE(agent().answers().approve());
    EXPECT_EQ(screen->taken(), "go\r\r");
    look();
    EXPECT_EQ(decided(), "working by input");
    EXPECT_EQ(notified, 0);
    EXPECT_EQ(question(), "");
}

TEST_F(AgentStatusTest, believesTitlesAtOnceButNoneThatComesBeforeItsDialog) {
    startIdle(SessionKind::codex);
    title("⠙ proj");
    EXPECT_EQ(decided(), "working by title");
    title("[ ! ] Action Required | proj");
    EXPECT_EQ(decided(), "waiting by screen");
    title("⠙ proj");
    EXPECT_EQ(decided(), "working by title");
    title("proj");
    EXPECT_EQ(decided(), "idle by title");

    startIdle(SessionKind::gemini);
    title("✦  Working… (proj)   ");
    EXPECT_EQ(status(), "working");
    title("◇  Ready (proj)   ");
    EXPECT_EQ(status(), "idle");

    // Claude's title is the same at the end of a turn and at a question, and comes up to 0.7 s before the question.
    startIdle(SessionKind::claude);
    title("◐ Claude Code");
    EXPECT_EQ(decided(), "working by title");
    busy();
    hooks("prompt\ntool\n");
    title("✳ Claude Code");
    pass(0.7);
    EXPECT_EQ(status(), "working");
    ask("Do you want to proceed?");
    pass(0.4);
    EXPECT_EQ(status(), "waiting");
    agent().type("1");
    title("◑ Claude Code");
    busy();
    look();
    title("✳ Claude Code");
    composer("");
    pass(1.2);
    EXPECT_EQ(decided(), "idle by title");
    // A prompt of its command line: nobody typed, and the title says for long that it works.
    start(SessionKind::claude);
    title("◐ Claude Code");
    pass(5);
    EXPECT_EQ(status(), "ready");
    pass(3);
    EXPECT_EQ(decided(), "working by title");
}

/// What Claude writes about itself, of a child that stands for it.
class ClaudeFileTest : public AgentStatusTest {
 protected:
    void run(ChildProcess::Group group) {
        auto made = ChildProcess::start(loop, {.arguments = {"/bin/sleep", "1000"}, .group = group}, {});
        ASSERT_TRUE(made);
        child = *std::move(made);
        scripted.process = child->pid();
        std::filesystem::create_directories(folder.path("/.claude/sessions"));
        startIdle(SessionKind::claude);
    }
    void TearDown() override {
        ASSERT_TRUE(child);
        EXPECT_TRUE(child->signal(SIGKILL));
    }
    void say(const std::string& status, double secondsAgo = 0) const {
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(loop.wallTime().time_since_epoch());
        folder.write(".claude/sessions/" + std::to_string(child->pid()) + ".json",
                     R"({"status":")" + status + R"(","waitingFor":"input needed","statusUpdatedAt":)" +
                         std::to_string(now.count() - static_cast<long long>(secondsAgo * 1000)) + "}");
    }

    std::unique_ptr<ChildProcess> child;
};

TEST_F(ClaudeFileTest, isBelievedWhileItIsNewerThanScreenAndKeys) {
    run(ChildProcess::Group::ownSession);
    say("busy");
    look();
    EXPECT_EQ(decided(), "working by statusFile");
    say("waiting");
    look();
    EXPECT_EQ(decided(), "waiting by statusFile");
    EXPECT_EQ(question(), "input needed");
    agent().type("1");
    EXPECT_EQ(status(), "working");
    EXPECT_FALSE(agent().terminal().reading().dialogUp);
    EXPECT_EQ(question(), "");
    look();
    EXPECT_EQ(status(), "working");
    say("idle");
    look();
    EXPECT_EQ(decided(), "idle by statusFile");
    // A new turn begins, and the file still tells of the last one.
    agent().type("go\r");
    title("◐ Claude Code");
    EXPECT_EQ(status(), "working");
    look();
    EXPECT_EQ(status(), "working");
    say("idle", 3);
    busy();
    look();
    EXPECT_EQ(status(), "working");
    folder.write(".claude/sessions/" + std::to_string(child->pid()) + ".json", "{\"status\":");
    look();
    EXPECT_EQ(status(), "working");
}

TEST_F(ClaudeFileTest, ofAForeignProcessIsNotBelieved) {
    run(ChildProcess::Group::own);  // of our session, not of its own
    say("busy");
    pass(4);
    EXPECT_EQ(status(), "idle");
}

TEST_F(AgentStatusTest, readsTheHooksOfClaude) {
    start(SessionKind::claude);
    composer("");
    hooks("prompt\n");
    busy();
    look();
    EXPECT_EQ(status(), "working");
    hooks("tool\nnotify\n");
    composer("");
    look();
    EXPECT_EQ(decided(), "waiting by hooks");
    pass(20);
    EXPECT_EQ(status(), "waiting");
    agent().type("y");
    EXPECT_EQ(status(), "working");
    hooks("tool\nst");
    look();
    hooks("op\n");
    look();
    EXPECT_EQ(decided(), "idle by hooks");
    hooks("notify\n");  // of idleness
    look();
    EXPECT_EQ(status(), "idle");
}

TEST_F(AgentStatusTest, readsTheUsersOwnAgentsByTheirPatterns) {
    spec.busyPatterns = {"reviewing [0-9]+", "(broken"};
    spec.waitingPatterns = {R"(\[y/n\])"};
    start(SessionKind::custom);
    draw("Reviewing 3\n");
    pass(8);
    EXPECT_EQ(status(), "ready");
    agent().type("go\r");
    pass(8);
    EXPECT_EQ(status(), "working");
    draw("Push? [Y/n]\n");
    pass(6.2);
    EXPECT_EQ(status(), "working");
    pass(1.5);
    EXPECT_EQ(decided(), "waiting by patterns");
    agent().type("y\r");
    EXPECT_EQ(status(), "working");
    draw("> ");
    pass(8);
    EXPECT_EQ(decided(), "idle by screen");

    spec.busyPatterns.clear();
    spec.waitingPatterns.clear();
    start(SessionKind::custom);
    agent().type("go\r");
    draw("thinking");
    pass(5);
    EXPECT_EQ(status(), "working");
    pass(8);  // the silence has to do
    EXPECT_EQ(decided(), "ready by output");
}

TEST_F(AgentStatusTest, beginsAnewWithAClear) {
    for (const bool byPrompt : {false, true}) {
        startIdle(SessionKind::claude);
        hooks("prompt\n");
        ask("Do you want to proceed?");
        look();
        ASSERT_EQ(status(), "waiting");
        composer("");
        if (byPrompt) {
            session->setStatus({SessionStatus::Idle{}}, StatusSource::screen);
            prompts().send("/clear", {});
            pass(0.3);
        } else {
            for (const char* key : {"/", "c", "l", "e", "a", "r", "\r"})
                agent().type(key);
        }
        EXPECT_EQ(decided(), "ready by clear") << byPrompt;
        EXPECT_FALSE(session->needsAttention());
        EXPECT_TRUE(agent().clearAwaitsTranscript());
        pass(20);
        EXPECT_EQ(status(), "ready");
        agent().type("x");
        EXPECT_FALSE(agent().clearAwaitsTranscript());
    }
}

TEST_F(AgentStatusTest, endsWithItsProgram) {
    for (const auto& [waitStatus, expected] : {std::pair(0, "done"), {256, "failed"}, {9, "failed"}}) {
        startIdle(SessionKind::claude);
        const std::string eventsPath = scripted.eventsPath;
        prompts().send("one", {});
        prompts().send("two", {});
        pass(0.05);
        screen->exit(waitStatus);
        EXPECT_EQ(status(), expected);
        EXPECT_EQ(promptStates(), "ff");
        EXPECT_FALSE(std::filesystem::exists(eventsPath));
        screen->taken();
        // Nobody revives it.
        session->type("hello\r");
        agent().sendRaw("hello");
        prompts().send("three", {});
        title("⠙ x");
        composer("");
        pass(40);
        EXPECT_EQ(status(), expected);
        EXPECT_EQ(promptStates(), "fff");
        EXPECT_EQ(screen->taken(), "");
    }
    start(SessionKind::shell, "true");
    EXPECT_EQ(status(), "ready");
    screen->feed("$ ");
    EXPECT_EQ(status(), "working");
}

}  // namespace
}  // namespace orvane::testing
