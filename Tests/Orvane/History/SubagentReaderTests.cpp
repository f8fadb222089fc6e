#include "Orvane/History/SubagentReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "Orvane/History/TranscriptDrift.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

class SubagentReaderTest : public testing::Test {
 protected:
    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        folder.write(name, text);
    }

    /// Long ago, for a folder that has just changed is not believed to stay as it is.
    void age(const std::string& name) {
        using namespace std::chrono_literals;
        std::filesystem::last_write_time(folder.path(name), std::filesystem::file_time_type::clock::now() - 24h);
    }

    static std::string call(const std::string& id, const std::string& session) {
        return R"({"type":"assistant","isSidechain":true,"sessionId":")" + session +
               R"(","timestamp":"2026-01-02T03:04:05Z","message":{"stop_reason":"end_turn","content":[)"
               R"({"type":"tool_use","id":")" +
               id + R"(","name":"Read","input":{"file_path":"/a"}}]}})" + "\n";
    }

    /// "agent:calls:type" of each.
    std::vector<std::string> shown() {
        std::vector<std::string> all;
        for (const AgentRun& run : reader.runs(folder.path("p/s1.jsonl")))
            all.push_back(run.id + ":" + std::to_string(run.events.size()) + ":" + run.agentType.value_or("-"));
        return all;
    }

    TemporaryFolder folder;
    SubagentReader reader;
};

TEST_F(SubagentReaderTest, ReadsBothPlacesAndNothingTwice) {
    EXPECT_THAT(shown(), ElementsAre());
    write("p/s1/subagents/agent-a.jsonl", call("1", "s1") + call("2", "s1") + "{\"cut");
    write("p/s1/subagents/agent-a.meta.json", R"({"agentType":"Explore"})");
    write("p/s1/subagents/agent-empty.jsonl", "");
    write("p/s1/subagents/notes.txt", "x");
    write("p/agent-old.jsonl", R"({"type":"summary"})"
                               "\n" +
                                   call("3", "s1"));
    write("p/agent-other.jsonl", call("4", "s2"));
    write("p/s1.jsonl", "");
    for (const char* name : {"p", "p/s1/subagents"})
        age(name);
    EXPECT_THAT(shown(), ElementsAre("a:2:Explore", "empty:0:-", "old:1:-"));
    EXPECT_EQ(reader.filesRead(), 5U);
    shown();
    EXPECT_EQ(reader.filesRead(), 0U);

    write("p/s1/subagents/agent-a.meta.json", R"({"agentType":"Planner"})");
    write("p/s1/subagents/agent-empty.jsonl", call("5", "s1"));
    EXPECT_THAT(shown(), ElementsAre("a:2:Planner", "empty:1:-", "old:1:-"));
    EXPECT_EQ(reader.filesRead(), 3U) << "the description, its agent and the other agent";
    std::filesystem::remove(folder.path("p/agent-old.jsonl"));
    write("p/s1/subagents/agent-b.jsonl", call("6", "s1"));
    EXPECT_THAT(shown(), ElementsAre("a:2:Planner", "b:1:-", "empty:1:-"));
}

TEST_F(SubagentReaderTest, AFolderThatChangedJustNowIsListedAgain) {
    write("p/s1/subagents/agent-a.jsonl", call("1", "s1"));
    EXPECT_EQ(shown().size(), 1U);
    const auto before = std::filesystem::last_write_time(folder.path("p/s1/subagents"));
    write("p/s1/subagents/agent-b.jsonl", call("2", "s1"));
    // As if both had been made within one tick of the file system's clock.
    std::filesystem::last_write_time(folder.path("p/s1/subagents"), before);
    EXPECT_EQ(shown().size(), 2U);
}

TEST_F(SubagentReaderTest, DriftCountsWhatNobodyReadsInTheNewestFiles) {
    const std::string known = R"({"type":"user"})"
                              "\n";
    write(".claude/projects/-p/1.jsonl", known +
                                             R"({"type":"hologram"})"
                                             "\n"
                                             "no JSON\n" +
                                             known + R"({"type":"us)");
    write(".claude/projects/-p/2.jsonl", R"({"type":"hologram"})"
                                         "\n"
                                         R"({"type":"holodeck"})");
    write(".codex/sessions/1.jsonl", R"({"type":"event_msg","payload":{"type":"sang"}})"
                                     "\n");
    write(".gemini/tmp/x/chats/session-1.json", "{\n}");
    write(".claude/projects/-p/old.jsonl", R"({"type":"fossil"})"
                                           "\n");
    age(".claude/projects/-p/old.jsonl");
    const TranscriptDrift drift = TranscriptDrift::look(folder.path(), 3);
    EXPECT_EQ(drift.filesRead, 3U);
    EXPECT_EQ(drift.filesFound, 4U);
    EXPECT_THAT(
        drift.notUnderstood,
        UnorderedElementsAre(Pair(TranscriptProvider::claude,
                                  UnorderedElementsAre(Pair("hologram", 2), Pair("holodeck", 1), Pair("malformed", 1))),
                             Pair(TranscriptProvider::codex, UnorderedElementsAre(Pair("event_msg/sang", 1)))));
}

TEST_F(SubagentReaderTest, DriftTakesALineThatIsCutAtTheEndOfTheHeadForNoFault) {
    std::string lines;
    while (lines.size() < 400'000)
        lines += R"({"type":"user","text":")" + std::string(5000, 'x') + "\"}\n";
    write(".claude/projects/-p/1.jsonl", lines);
    EXPECT_TRUE(TranscriptDrift::look(folder.path()).notUnderstood.empty());
}

}  // namespace
}  // namespace orvane
