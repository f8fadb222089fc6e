// Past conversations as people and scripts find them and take them up again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/json.hpp>
#include <filesystem>

#include "EndToEnd/HostTest.h"
#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class HistoryVerbsTest : public HostTest {
 protected:
    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        folder.write(name, text);
    }

    static std::string claude(const std::string& id, const std::string& cwd, const std::string& prompt) {
        return R"({"type":"user","sessionId":")" + id + R"(","cwd":")" + cwd +
               R"(","timestamp":"2026-01-02T03:04:05Z","message":{"content":")" + prompt + "\"}}\n";
    }

    static std::string answer(const std::string& blocks) {
        return R"({"type":"assistant","timestamp":"2026-01-02T03:05:05Z","message":{"content":[)" + blocks + "]}}\n";
    }

    static std::string call(const std::string& id, const std::string& name, const std::string& input) {
        return R"({"type":"tool_use","id":")" + id + R"(","name":")" + name + R"(","input":)" + input + "}";
    }

    static std::string failure(const std::string& id) {
        return R"({"type":"user","message":{"content":[{"type":"tool_result","is_error":true,"tool_use_id":")" + id +
               R"(","content":"exit 2"}]}})" + "\n";
    }

    /// A conversation with tools, a subagent and a file of that agent.
    void writeConversation() {
        // Claude Code makes the folder's name of the project's path.
        std::string project = folder.path("project");
        std::ranges::replace(project, '/', '-');
        const std::string transcript = ".claude/projects/" + project + "/cafe-1";
        write(transcript + ".jsonl",
              claude("cafe-1", folder.path("project"), "Mend the \\u001b[31mlogin") +
                  answer(R"({"type":"text","text":"I look."},)" +
                         call("t1", "Edit", R"({"file_path":")" + folder.path("project/a.cpp") + R"("})") + "," +
                         call("t2", "Bash", R"({"command":"curl x"})")) +
                  failure("t2") + answer(call("t3", "Task", R"({"description":"Look around"})")) +
                  R"({"type":"hologram"})" + "\n" + R"({"type":"ai-title","aiTitle":"Login"})" + "\n");
        write(transcript + "/subagents/agent-a1.jsonl", answer(call("s1", "Read", R"({"file_path":"/etc/hosts"})")));
        write(transcript + "/subagents/agent-a1.meta.json", R"({"agentType":"Explore","toolUseId":"t3"})");
        environment["TZ"] = "UTC";
    }

    /// A program of this name that the login shell finds.
    void install(const std::string& name, const std::string& script) {
        write("bin/" + name, "#!/bin/sh\n" + script);
        std::filesystem::permissions(folder.path("bin/" + name), std::filesystem::perms::owner_all);
        for (const char* profile : {".bash_profile", ".zprofile"})
            folder.write(profile, "PATH=" + folder.path("bin") + ":/usr/bin:/bin\n");
    }
};

TEST_F(HistoryVerbsTest, PastConversationsAreListedSearchedAndResumed) {
    write(".claude/projects/-p/1.jsonl", claude("11112222-aaaa", folder.path("project"), "Mend the login"));
    write(".claude/projects/-p/2.jsonl", claude("11112222-bbbb", folder.path("gone"), "Write the tests"));
    write(".codex/sessions/2026/rollout.jsonl",
          R"({"type":"session_meta","payload":{"id":"cccc","cwd":"/w/codex"}})"
          "\n"
          R"({"type":"event_msg","payload":{"type":"user_message","message":"Login again"}})");
    install("claude", "echo \"claude got $*\"; pwd; exec sleep 1000\n");
    environment["TZ"] = "UTC";

    const auto listed = orvane({"history"});
    EXPECT_EQ(listed->status(), 0) << listed->errors;
    EXPECT_THAT(listed->output, HasSubstr("11112222-a  2 Jan"));
    EXPECT_THAT(listed->output, HasSubstr("Write the tests"));
    const auto found = Json::parse(orvane({"history", "LOGIN", "--provider", "claude", "--json"})->output);
    ASSERT_TRUE(found && found->is_array());
    ASSERT_EQ(found->get_array().size(), 1U);
    const JSONObject record(found->get_array().front());
    EXPECT_EQ(record.string("id"), "11112222-aaaa");
    EXPECT_EQ(record.string("lastActivityAt"), "2026-01-02T03:04:05.000Z");
    EXPECT_THAT(orvane({"history", "--until", "2026-01-02"})->output, Not(HasSubstr("Login again")));
    EXPECT_THAT(orvane({"history", "--project", "codex"})->output, HasSubstr("Login again"));
    EXPECT_THAT(orvane({"history", "--limit", "1"})->errors, HasSubstr("1 of 3"));
    EXPECT_THAT(orvane({"history", "nothing like it"})->output, HasSubstr("No conversations"));

    const auto resumed = orvane({"history", "resume", "11112222-A"});
    ASSERT_EQ(resumed->status(), 0) << resumed->errors;
    const std::string id = resumed->output.substr(0, 8);
    EXPECT_TRUE(loop.runUntil([&] {
        return orvane({"screen", id})->output.contains("claude got --resume 11112222-aaaa");
    })) << orvane({"screen", id})->output;

    const std::tuple<std::vector<std::string>, int, std::string> refused[] = {
        {{"history", "resume", "11112222-aaaa"}, 1, "open already"},
        {{"history", "resume", "11112222-b"}, 1, "no longer exists: " + folder.path("gone")},
        {{"history", "resume", "1111"}, 1, "1111"},
        {{"history", "resume", "zz"}, 1, "zz"},
        {{"history", "--since", "sometime"}, 2, "“sometime” is no date"},
        {{"history", "--provider", "nobody"}, 2, "claude, codex, gemini"},
        {{"history", "--sort", "size"}, 2, "lastActivity"},
        {{"history", "--limit", "0"}, 2, "“0”"},
        {{"history", "--project", "nowhere"}, 1, "nowhere"},
    };
    for (const auto& [words, status, message] : refused) {
        const auto run = orvane(words);
        EXPECT_EQ(run->status(), status) << ::testing::PrintToString(words) << run->errors;
        EXPECT_THAT(run->errors, HasSubstr(message));
    }
    EXPECT_TRUE(std::filesystem::exists(folder.path("data/Orvane/history.json")));
    EXPECT_EQ(orvane({"quit", "--force"})->status(), 0);
}

TEST_F(HistoryVerbsTest, AConversationIsShownAndTraced) {
    writeConversation();
    install("claude", "exec sleep 1000\n");
    EXPECT_EQ(orvane({"history", "show", "caf"})->output, R"(Login
Agent: Claude Code
Project: )" + folder.path("project") + R"(
Conversation: cafe-1
Time: 2026-01-02 03:04 – 03:05

You · 2026-01-02 03:04
Mend the login

Claude Code · 03:05
I look.

  2 tools: Edit 1, Bash 1; 1 failed
  Subagent  Look around
)");
    const auto document = orvane({"history", "show", "caf", "--markdown", "--tools", "--limit", "3"});
    EXPECT_THAT(document->output, HasSubstr("# Login\n"));
    EXPECT_THAT(document->output, HasSubstr("- **Bash** `curl x` — failed: exit 2\n"));
    EXPECT_THAT(document->output, Not(HasSubstr("I look.")));
    EXPECT_THAT(document->errors, HasSubstr("the newest 3 are shown"));
    const auto json = Json::parse(orvane({"history", "show", "caf", "--json"})->output);
    ASSERT_TRUE(json);
    const JSONObject shown(*json);
    EXPECT_EQ(shown.object("conversation").string("title"), "Login");
    ASSERT_EQ(shown.array("entries").size(), 5U);
    EXPECT_EQ(JSONObject(shown.array("entries").at(3)).string("role"), "error");
    EXPECT_TRUE(shown.boolean("isComplete"));

    const std::string traced = orvane({"trace", "caf"})->output;
    for (const char* part : {"Login\n4 tool calls, 1 failed, 3 without a result, 1 by subagents\n",
                             "\n  a.cpp  [1 edit]\n  /etc/hosts\n", "Failures (1)\n  Bash  curl x  [failed: exit 2]\n",
                             "Sensitive calls (1)\n", "Subagents (1)\n  Explore  Look around  ["})
        EXPECT_THAT(traced, HasSubstr(part));

    const auto resumed = orvane({"history", "resume", "caf"});
    ASSERT_EQ(resumed->status(), 0) << resumed->errors;
    const std::string session = resumed->output.substr(0, resumed->output.find('\n'));
    EXPECT_TRUE(loop.runUntil([&] {
        const auto live = Json::parse(orvane({"trace", session, "--json"})->output);
        return live && JSONObject(*live).object("summary").integer("total") == 4;
    })) << orvane({"trace", session})->errors;
    const std::string shell = orvane({"new", "shell"})->output.substr(0, 8);

    const std::tuple<std::vector<std::string>, int, std::string> refused[] = {
        {{"trace", shell}, 1, "writes no transcript"},
        {{"trace", "zz"}, 1, "zz"},
        {{"history", "show", "zz"}, 1, "zz"},
        {{"history", "show"}, 2, "ID"},
        {{"history", "show", "caf", "--limit", "none"}, 2, "none"},
    };
    for (const auto& [words, status, message] : refused) {
        const auto run = orvane(words);
        EXPECT_EQ(run->status(), status) << ::testing::PrintToString(words) << run->errors;
        EXPECT_THAT(run->errors, HasSubstr(message));
    }
    EXPECT_EQ(orvane({"quit", "--force"})->status(), 0);
}

TEST_F(HistoryVerbsTest, TheDoctorCountsRecordsThatNobodyReads) {
    writeConversation();
    install("claude", "echo 9.9.9\n");
    const auto checked = orvane({"doctor"});
    EXPECT_EQ(checked->status(), 0) << checked->errors;
    EXPECT_THAT(checked->output, HasSubstr("9.9.9"));
    EXPECT_THAT(checked->output, HasSubstr("the newest: 1 of 1\n"));
    EXPECT_THAT(checked->output, HasSubstr("claude  1      hologram\n"));
    const auto json = Json::parse(orvane({"doctor", "--json"})->output);
    ASSERT_TRUE(json);
    EXPECT_EQ(JSONObject(*json).array("tools").size(), 3U);
    const JSONObject transcripts = JSONObject(*json).object("transcripts");
    EXPECT_EQ(transcripts.integer("filesRead"), 1);
    EXPECT_EQ(JSONObject(transcripts.array("notUnderstood").at(0)).string("kind"), "hologram");
}

}  // namespace
}  // namespace orvane
