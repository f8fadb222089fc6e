#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Orvane/Agents/ScriptedScreen.h"
#include "Orvane/Workspace/SessionSaving.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"

namespace orvane::testing {
namespace {

/// A live session and the file that its agent writes, in the places where the agents of today have them.
class TranscriptWatchTest : public ScriptedScreenTest {
 protected:
    std::string claudeFile(const std::string& id) const {
        std::string name = folder.path();
        std::ranges::replace_if(name, [](unsigned char each) { return std::isalnum(each) == 0; }, '-');
        return folder.path(".claude/projects/" + name + "/" + id + ".jsonl");
    }
    std::string codexFile() const {
        return folder.path(".codex/sessions/2026/01/01/rollout-2026-01-01T00-00-00-abc.jsonl");
    }
    std::string geminiFile() const {
        return GeminiTranscript::transcriptDirectory(folder.path(), folder.path()) +
               "/session-2026-01-01T00-00-a.jsonl";
    }

    static void append(const std::string& path, const std::string& lines) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::app) << lines << '\n';
    }

    static std::string asked(const std::string& text, const std::string& time = "2026-01-01T00:00:02Z") {
        return R"({"type":"user","timestamp":")" + time + R"(","message":{"role":"user","content":")" + text + "\"}}";
    }
    static std::string answered(const std::string& model, int tokens) {
        return R"({"type":"assistant","message":{"id":"m)" + std::to_string(tokens) +
               R"(","role":"assistant","model":")" + model +
               R"(","stop_reason":"end_turn","content":[{"type":"text","text":"Done"}],"usage":{"input_tokens":)" +
               std::to_string(tokens) + "}}}";
    }

    std::string now() const {
        return Date{std::chrono::duration<double>(loop.wallTime().time_since_epoch()).count()}.iso8601();
    }
    void ask() { agent().watch().noteInteraction(); }
    const TranscriptWatch& watch() { return *agent().transcript(); }
    std::string boundTo() { return watch().path().value_or("nothing"); }
    std::string model() { return agent().controls().settings().modelName.value_or("unknown"); }
    std::string use() {
        const auto use = agent().contextUse();
        return use ? std::to_string(use->used) + " of " + std::to_string(use->window) : "unknown";
    }

    /// Lets time pass until the condition holds, since files are read on other threads.
    bool eventually(const std::function<bool()>& condition) {
        for (int look = 0; look < 400 && !condition(); ++look) {
            loop.advance(std::chrono::milliseconds(500));
            (void)loop.runUntil(condition, std::chrono::milliseconds(20));
        }
        return condition();
    }
    void lookTwice() {
        for (int look = 0; look < 2; ++look) {
            pass(6);
            bool isDone = false;
            runInBackground(pool, loop, [] { return 0; }, [&](int) { isDone = true; });
            ASSERT_TRUE(loop.runUntil([&] { return isDone; }));
            (void)loop.runUntil([] { return false; }, std::chrono::milliseconds(20));
        }
    }
};

TEST_F(TranscriptWatchTest, BindsASessionOfEachAgentAndTellsModelAndContext) {
    struct Case {
        SessionKind kind;
        std::string path;
        std::string lines;
        const char* model;
        const char* use;
        const char* resume;
    };
    const std::string begun = "2026-01-01T00:00:02Z";
    const std::string hash = GeminiTranscript::projectHash(folder.path());
    const Case cases[] = {
        {SessionKind::claude, claudeFile("one"), asked("Hello") + "\n" + answered("claude-opus-4-5", 50'000),
         "claude-opus-4-5", "50000 of 200000", "claude --resume 'one'"},
        {SessionKind::codex, codexFile(),
         R"({"timestamp":"2026-01-01T00:00:02Z","type":"session_meta","payload":{"id":"abc","cwd":")" + folder.path() +
             R"("}})"
             "\n"
             R"({"type":"turn_context","payload":{"model":"gpt-6"}})"
             "\n"
             R"({"type":"event_msg","payload":{"type":"token_count","info":{"last_token_usage":{"total_tokens":900},"model_context_window":1000}}})",
         "gpt-6", "900 of 1000", "codex resume 'abc'"},
        {SessionKind::gemini, geminiFile(),
         R"({"sessionId":"a","projectHash":")" + hash + R"(","startTime":"2026-01-01T00:00:02Z"})" + "\n" +
             R"({"id":"1","type":"gemini","content":"Done","model":"gemini-3-pro","tokens":{"input":70}})",
         "gemini-3-pro", "70 of 1048576", "gemini --resume 'a'"},
    };
    for (const Case& each : cases) {
        start(each.kind);
        std::string lines = each.lines;
        lines.replace(lines.find(begun), begun.size(), now());
        append(each.path, lines);
        lookTwice();
        EXPECT_EQ(boundTo(), "nothing") << "it was not asked anything yet";
        ask();
        ASSERT_TRUE(eventually([&] { return use() != "unknown"; })) << each.path;
        EXPECT_EQ(boundTo(), each.path);
        EXPECT_EQ(model(), each.model);
        EXPECT_EQ(use(), each.use);
        EXPECT_EQ(SessionSaving::saved(*session).command, each.resume) << "after a restart it goes on there";
    }
}

TEST_F(TranscriptWatchTest, GivesTwoSessionsOfAFolderTheirOwnFilesAndNoneOfSomebodyElse) {
    append(claudeFile("foreign"), asked("Before", "2025-12-01T00:00:00Z"));
    start(SessionKind::claude);
    SessionController* first = session;
    pass(60);
    start(SessionKind::claude);
    append(claudeFile("foreign"), answered("claude-opus-4-5", 1));
    ask();
    append(claudeFile("second"), asked("Two", "2026-01-01T00:01:00Z"));
    ASSERT_TRUE(eventually([&] { return watch().path().has_value(); }));
    EXPECT_EQ(boundTo(), claudeFile("second"));
    EXPECT_EQ(first->agent()->transcript()->path(), std::nullopt);
    first->agent()->watch().noteInteraction();
    append(claudeFile("first"), asked("One", "2026-01-01T00:02:00Z"));
    ASSERT_TRUE(eventually([&] { return first->agent()->transcript()->path().has_value(); }));
    EXPECT_EQ(first->agent()->transcript()->path(), claudeFile("first"));
}

TEST_F(TranscriptWatchTest, GoesOnWithTheConversationThatItsCommandNames) {
    const std::string wanted = "8e8d1a93-5a40-4e0e-9a6b-7d1f0c9b2e11";
    append(claudeFile(wanted), asked("Old", "2025-12-01T00:00:00Z") + "\n" + answered("claude-opus-4-5", 7));
    append(claudeFile("newer"), asked("New"));
    const std::string command = "claude --resume " + wanted;
    start(SessionKind::claude, command);
    ASSERT_TRUE(eventually([&] { return use() != "unknown"; }));
    EXPECT_EQ(boundTo(), claudeFile(wanted));
    // Once it has ended the conversation is free for another.
    screen->exit(0);
    start(SessionKind::claude, command);
    ASSERT_TRUE(eventually([&] { return use() != "unknown"; }));
    EXPECT_EQ(boundTo(), claudeFile(wanted));
}

TEST_F(TranscriptWatchTest, AdoptsTheSuccessorOfAConversationThatWasCleared) {
    startIdle(SessionKind::claude);
    append(claudeFile("one"), asked("Hello") + "\n" + answered("claude-opus-4-5", 50'000));
    ASSERT_TRUE(eventually([&] { return use() == "50000 of 200000"; }));
    agent().sendRaw("/clear");
    EXPECT_EQ(use(), "unknown");
    append(claudeFile("one"), answered("claude-opus-4-5", 60'000));
    append(claudeFile("other"), asked("Somebody else", now()));
    append(claudeFile("two"), asked("<command-name>/clear</command-name>", now()));
    ASSERT_TRUE(eventually([&] { return boundTo() == claudeFile("two"); }));
    EXPECT_EQ(use(), "unknown");
    append(claudeFile("two"), answered("claude-opus-4-5", 5));
    EXPECT_TRUE(eventually([&] { return use() == "5 of 200000"; }));
}

TEST_F(TranscriptWatchTest, DoesNotTakeBackAModelThatWasSwitchedAMomentAgo) {
    startIdle(SessionKind::claude);
    append(claudeFile("one"), asked("Hello") + "\n" + answered("claude-sonnet-4-5", 1));
    ASSERT_TRUE(eventually([&] { return model() == "claude-sonnet-4-5"; }));
    ASSERT_TRUE(agent().controls().setModel("opus[1m]").has_value());
    append(claudeFile("one"), answered("claude-sonnet-4-5", 2));
    ASSERT_TRUE(eventually([&] { return use().starts_with("2 "); }));
    EXPECT_EQ(model(), "opus[1m]");
    append(claudeFile("one"), answered("claude-sonnet-4-5", 3));
    pass(30);
    ASSERT_TRUE(eventually([&] { return use().starts_with("3 "); }));
    EXPECT_EQ(model(), "opus[1m]") << "the transcript has told nothing new";
    append(claudeFile("one"), answered("claude-opus-4-5", 4));
    ASSERT_TRUE(eventually([&] { return model() == "claude-opus-4-5[1m]"; }));
    EXPECT_EQ(use(), "4 of 1000000");
    EXPECT_TRUE(agent().controls().runsModel("opus[1m]")) << "the same one, by its alias";
    append(claudeFile("one"), answered("claude-haiku-4-5", 5));
    ASSERT_TRUE(eventually([&] { return model() == "claude-haiku-4-5"; })) << "its user has switched it";
}

TEST_F(TranscriptWatchTest, EndsATurnThatNothingElseTellsTheEndOf) {
    startIdle(SessionKind::codex);
    append(codexFile(), R"({"timestamp":"2026-01-01T00:00:02Z","type":"session_meta","payload":{"cwd":")" +
                            folder.path() + R"("}})");
    append(codexFile(), R"({"type":"event_msg","payload":{"type":"task_complete"}})");
    ASSERT_TRUE(eventually([&] { return boundTo() == codexFile(); }));
    agent().sendRaw("Go on");
    screen->feed("\x1b[2J");
    pass(8);
    EXPECT_EQ(status(), "working") << "the end that the transcript tells is that of the turn before";
    append(codexFile(), R"({"type":"event_msg","payload":{"type":"task_complete"}})");
    EXPECT_TRUE(eventually([&] { return decided() == "idle by transcript"; })) << decided();
}

}  // namespace
}  // namespace orvane::testing
