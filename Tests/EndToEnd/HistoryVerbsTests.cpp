// Past conversations as people and scripts find them and take them up again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
};

TEST_F(HistoryVerbsTest, PastConversationsAreListedSearchedAndResumed) {
    write(".claude/projects/-p/1.jsonl", claude("11112222-aaaa", folder.path("project"), "Mend the login"));
    write(".claude/projects/-p/2.jsonl", claude("11112222-bbbb", folder.path("gone"), "Write the tests"));
    write(".codex/sessions/2026/rollout.jsonl",
          R"({"type":"session_meta","payload":{"id":"cccc","cwd":"/w/codex"}})"
          "\n"
          R"({"type":"event_msg","payload":{"type":"user_message","message":"Login again"}})");
    write("bin/claude", "#!/bin/sh\necho \"claude got $*\"; pwd; exec sleep 1000\n");
    std::filesystem::permissions(folder.path("bin/claude"), std::filesystem::perms::owner_all);
    for (const char* profile : {".bash_profile", ".zprofile"})
        folder.write(profile, "PATH=" + folder.path("bin") + ":/usr/bin:/bin\n");
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

}  // namespace
}  // namespace orvane
