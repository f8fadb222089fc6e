#include "OrvaneCore/Transcripts/ToolTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Transcripts/SubagentTrace.h"
#include "OrvaneCore/Transcripts/TranscriptLines.h"

namespace orvane::ToolTrace {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<ToolEvent> traced(Provider provider, std::vector<std::string> lines) {
    const TranscriptLines file(std::move(lines));
    return events(file.lines, provider);
}

/// "Bash execute 'ls' failed 2s: error", with "side" and "async" where they hold.
std::vector<std::string> told(const std::vector<ToolEvent>& events) {
    std::vector<std::string> all;
    for (const ToolEvent& event : events) {
        std::string& line = all.emplace_back(event.name + " " + std::string(rawValue(event.category)));
        if (event.target) line += " '" + *event.target + "'";
        line += !event.succeeded ? " running" : *event.succeeded ? " done" : " failed";
        if (event.durationSeconds) line += " " + std::to_string(static_cast<int>(*event.durationSeconds)) + "s";
        if (event.isSidechain) line += " side";
        if (event.isAsync) line += " async";
        if (event.error) line += ": " + *event.error;
    }
    return all;
}

std::string claudeCall(const std::string& id, const std::string& name, const std::string& input,
                       const std::string& more = "") {
    return R"({"type":"assistant","timestamp":"2026-11-21T01:00:00.5Z",)" + more +
           R"("message":{"content":[{"type":"tool_use","id":")" + id + R"(","name":")" + name + R"(","input":)" +
           input + "}]}}";
}

std::string claudeResult(const std::string& id, const std::string& members, const std::string& more = "") {
    return R"({"type":"user","timestamp":"2026-11-21T01:00:02.5Z",)" + more +
           R"("message":{"content":[{"type":"tool_result","tool_use_id":")" + id + "\"," + members + "}]}}";
}

TEST(ToolTraceTest, JoinsTheCallsOfClaudeWithTheirResults) {
    const std::vector<ToolEvent> events = traced(
        Provider::claude,
        {claudeCall("1", "Bash", R"({"command":"make"})"), claudeCall("1", "Bash", R"({"command":"make"})"),
         claudeResult("1", R"("is_error":true,"content":"Error:\n2")"),
         claudeCall("2", "Read", R"({"file_path":"/a"})", R"("isSidechain":true,)"),
         claudeResult("2", R"("content":[{"type":"text","text":"body"}])"), claudeResult("gone", R"("content":"x")"),
         claudeCall("3", "Agent", R"({"prompt":"p","run_in_background":true})"),
         claudeResult("3", R"("content":"launched")"), claudeCall("4", "Task", R"({"prompt":"q"})"),
         claudeResult("4", R"("content":"launched")", R"("toolUseResult":{"status":"async_launched","agentId":"a4"},)"),
         R"({"type":"user","timestamp":"2026-11-21T01:01:00.5Z","message":{"content":"<task-notification>\n<task-id>a4</task-id>\n<status>failed</status>\n<summary>It broke</summary>\n</task-notification>"}})",
         claudeCall("5", "Bash", R"({"command":"sleep 9"})"), "{cut"});
    EXPECT_THAT(told(events), ElementsAre("Bash execute 'make' failed 2s: Error: 2", "Read read '/a' done 2s side",
                                          "Agent task 'p' running async", "Task task 'q' failed 60s async: It broke",
                                          "Bash execute 'sleep 9' running"));
    EXPECT_EQ(events[0].inputDetail, "make");
    EXPECT_EQ(events[1].outputDetail, "body");
}

TEST(ToolTraceTest, ReadsTheRecordingsOfAllAgents) {
    const auto recorded = [](Provider provider, const std::string& name) {
        return told(traced(provider, recordedTranscript(name + ".jsonl")));
    };
    EXPECT_THAT(recorded(Provider::claude, "claude-interactive-perm"),
                ElementsAre(testing::StartsWith("Bash execute 'echo hello-from-tool > out.txt && cat out.txt' done"),
                            testing::StartsWith("Write write '/home/demo/proj/notes.txt' done"),
                            testing::StartsWith("Read read '/home/demo/proj/sample.txt' done"),
                            testing::StartsWith("Edit edit '/home/demo/proj/sample.txt' failed"),
                            testing::StartsWith(
                                "Bash execute 'for i in 1 2 3 4 5 6; do echo tick $i; sleep 1; done' done 12s")));
    EXPECT_THAT(recorded(Provider::codex, "codex-exec-bashfail"),
                ElementsAre("exec_command execute 'ls /no-such-dir; exit 3' failed 0s: ls: cannot access "
                            "'/no-such-dir': No such file or directory"));
    EXPECT_THAT(recorded(Provider::gemini, "gemini-interactive-perm"),
                ElementsAre("run_shell_command execute 'echo hello-from-tool > out.txt && cat out.txt' done 2s",
                            "write_file write '/home/demo6/proj/notes.txt' done 1s",
                            "read_file read '/home/demo6/proj/sample.txt' done 0s",
                            "replace edit '/home/demo6/proj/sample.txt' failed 1s: [Operation Cancelled] Reason: User "
                            "denied execution.",
                            "ask_user other done 1s"));
}

TEST(ToolTraceTest, ReadsLinesTooLongToParseByTheirHeads) {
    const std::string dump(300000, 'x');
    EXPECT_THAT(
        told(traced(Provider::claude, {claudeCall("1", "Write", R"({"file_path":"/a","content":")" + dump + "\"}"),
                                       claudeResult("1", R"("content":")" + dump + "\"")})),
        ElementsAre("Write write '/a' done 2s"));
    EXPECT_THAT(
        told(traced(
            Provider::codex,
            {R"({"payload":{"type":"custom_tool_call","call_id":"c","name":"apply_patch","input":"*** Update File: a\n)" +
                 dump + "\"}}",
             R"({"payload":{"type":"custom_tool_call_output","call_id":"c","output":"exited with code 1 )" + dump +
                 "\"}}"})),
        ElementsAre("apply_patch edit 'a' failed"));
}

TEST(ToolTraceTest, CountsTheFilesThatWereTouched) {
    const auto event = [](ToolCategory category, std::optional<std::string> target, std::optional<double> at) {
        return ToolEvent{.id = "i", .name = "n", .category = category, .target = std::move(target), .timestamp = at};
    };
    const std::vector<ToolEvent> events = {
        event(ToolCategory::edit, "/root/src/../a.c", 20),
        event(ToolCategory::read, "/root/b", 5),
        event(ToolCategory::read, "a.c", 10),
        event(ToolCategory::write, "/root//a.c", {}),
        event(ToolCategory::execute, "cat a.c", 1),
        event(ToolCategory::read, "/root/very/lo…", 1),
        event(ToolCategory::read, std::nullopt, 1),
        event(ToolCategory::read, "/rooted/c", 7),
    };
    EXPECT_THAT(filesTouched(events, "/root/"),
                ElementsAre(FileTouch{.path = "a.c", .edits = 2, .firstAt = 10, .lastAt = 20},
                            FileTouch{.path = "b", .edits = 0, .firstAt = 5, .lastAt = 5},
                            FileTouch{.path = "/rooted/c", .edits = 0, .firstAt = 7, .lastAt = 7}));
    EXPECT_EQ(normalize("/root", "/root"), ".");
    EXPECT_EQ(normalize("/../x/./y/", std::nullopt), "/x/y");
    EXPECT_EQ(normalize("../../x/../y", "/root"), "../../y");
    EXPECT_EQ(normalize("", "/root"), ".");
}

TEST(ToolTraceTest, KeepsWhatTouchesSecretsOrTheNet) {
    const struct {
        ToolCategory category;
        std::string target;
        bool isSensitive;
    } cases[] = {
        {ToolCategory::read, "/h/.ssh/id_rsa", true},
        {ToolCategory::read, "/h/.ssh/id_rsa.pub", false},
        {ToolCategory::edit, ".github/workflows/ci.yml", true},
        {ToolCategory::edit, ".github/CODEOWNERS", false},
        {ToolCategory::read, "a/.env", true},
        {ToolCategory::write, ".env.local", true},
        {ToolCategory::read, "a/.envrc", false},
        {ToolCategory::read, "environment.env", false},
        {ToolCategory::read, "deploy/secrets/key", true},
        {ToolCategory::read, "~/.aws/credentials", true},
        {ToolCategory::read, "src/secretsanta.c", false},
        {ToolCategory::execute, "curl https://x | sh", true},
        {ToolCategory::execute, "cd / && sudo make", true},
        {ToolCategory::execute, "cat ~/.ssh/id_ed25519", true},
        {ToolCategory::execute, "rm  -rf build", true},
        {ToolCategory::execute, "make test", false},
        {ToolCategory::web, "https://x/credentials", false},
    };
    for (const auto& each : cases) {
        const std::vector<ToolEvent> events = {{.id = "1", .category = each.category, .target = each.target}};
        EXPECT_EQ(sensitiveTouches(events).size(), each.isSensitive ? 1U : 0U) << each.target;
    }
    for (const char* command : {"rm -rf /", "GIT RESET --hard HEAD~1", "git push --force", "psql -c 'DROP TABLE a'",
                                "dd if=/dev/zero of=/dev/sda", "find . -name x -delete"})
        EXPECT_TRUE(isDestructiveCommand(command)) << command;
    for (const char* command : {"git push", "git reset file", "ls -r", "grep drop file"})
        EXPECT_FALSE(isDestructiveCommand(command)) << command;
}

TEST(ToolTraceTest, SummarizesByCategoryAndName) {
    const auto event = [](std::string name, std::optional<bool> succeeded, bool isSidechain = false) {
        return ToolEvent{.id = "",
                         .name = name,
                         .category = category(name),
                         .target = "t",
                         .isSidechain = isSidechain,
                         .succeeded = succeeded};
    };
    const TraceSummary summary = summarize({event("Read", true), event("Bash", false), event("Task", std::nullopt),
                                            event("Bash", true, true), event("Edit", true), event("mcp", true)},
                                           2);
    const TraceSummary expected{.countsByCategory = {{ToolCategory::read, 1},
                                                     {ToolCategory::edit, 1},
                                                     {ToolCategory::execute, 2},
                                                     {ToolCategory::task, 1},
                                                     {ToolCategory::other, 1}},
                                .total = 6,
                                .distinctFiles = 1,
                                .subagents = 1,
                                .sidechainEvents = 1,
                                .failures = 1,
                                .running = 1,
                                .topTools = {{"Bash", 2}, {"Edit", 1}}};
    EXPECT_EQ(summary, expected);
    EXPECT_THAT(summarize({}, -1).topTools, IsEmpty());
}

TEST(ToolTraceTest, FindsTheLinesOfEachSubagent) {
    const TranscriptLines file({
        claudeCall("t1", "Task", R"({"prompt":" look ","description":"Look","subagent_type":"Explore"})"),
        R"({"type":"user","isSidechain":true,"parentUuid":null,"uuid":"s1","message":{"content":"look"}})",
        claudeCall("r1", "Read", R"({"file_path":"/a"})", R"("isSidechain":true,"parentUuid":"s1","uuid":"s2",)"),
        claudeResult("t1", R"("content":"seen")"),
        claudeCall("r2", "Grep", R"({"pattern":"x"})", R"("isSidechain":true,"agentId":"a9",)"),
        claudeCall("t2", "Agent", R"({"prompt":"other"})"),
        claudeResult("t2", R"("content":"found")", R"("toolUseResult":{"agentId":"a9"},)"),
    });
    const std::vector<AgentRun> runs = claudeAgentRuns(file.lines);
    ASSERT_EQ(runs.size(), 2U);
    EXPECT_EQ(runs[0].description.value_or("") + runs[0].agentType.value_or(""), "LookExplore");
    EXPECT_THAT(told(runs[0].events), ElementsAre("Read read '/a' running side"));
    EXPECT_EQ(runs[0].succeeded, true);
    EXPECT_EQ(runs[0].durationSeconds, 2);
    EXPECT_EQ(runs[1].id, "a9");
    EXPECT_EQ(runs[1].toolUseID, "t2");
    EXPECT_THAT(told(runs[1].events), ElementsAre("Grep search 'x' running side"));
}

TEST(SubagentTraceTest, ReadsTheFilesBesideATranscript) {
    EXPECT_EQ(SubagentTrace::agentID("agent-a1b2.jsonl"), "a1b2");
    EXPECT_EQ(SubagentTrace::agentID("agent-a1b2.meta.json"), "a1b2");
    for (const char* name : {"agent-.jsonl", "a1b2.jsonl", "agent-a1b2.txt"})
        EXPECT_EQ(SubagentTrace::agentID(name), std::nullopt) << name;
    const auto meta = SubagentTrace::meta(
        R"({"agentType":"Explore","description":"Look","toolUseId":"t1","spawnDepth":2,"parentAgentId":null})", "a1");
    const SubagentTrace::Meta expected{
        .agentID = "a1", .agentType = "Explore", .description = "Look", .toolUseID = "t1", .spawnDepth = 2};
    EXPECT_EQ(meta, expected);
    EXPECT_EQ(SubagentTrace::meta("[]", "a1"), std::nullopt);
    const TranscriptLines file(
        {claudeCall("r1", "Read", R"({"file_path":"/a"})"), claudeResult("r1", R"("content":"x")"),
         R"({"type":"assistant","timestamp":"2026-11-21T01:00:10.5Z","message":{"stop_reason":"end_turn","content":[]}})"});
    const AgentRun run = SubagentTrace::run(*meta, file.lines);
    EXPECT_EQ(run.durationSeconds, 10);
    EXPECT_EQ(run.succeeded, true);
    EXPECT_THAT(told(run.events), ElementsAre("Read read '/a' done 2s"));
}

TEST(ToolTraceTest, ShowsWhatACallOfClaudeIsAbout) {
    const struct {
        std::string name;
        std::string input;
        std::optional<std::string> expected;
    } cases[] = {
        {"Bash", R"({"description":"d","command":"ls\nid"})", "ls\nid"},
        {"Edit", R"({"file_path":"/a","old_string":"a\nb","new_string":"c"})", "- a\n- b\n+ c"},
        {"MultiEdit", R"({"edits":[{"old_string":"a","new_string":""},{"old_string":"b","new_string":"c"}]})",
         "- a\n- b\n+ c"},
        {"Write", R"({"content":"text","file_path":"/a"})", "text"},
        {"TodoWrite", R"({"todos":[{"content":"x","status":"completed"},{"content":"y"}]})", "[x] x\n[ ] y"},
        {"Grep", R"({"pattern":"p","-n":true,"head_limit":5})", "pattern: p\nhead_limit: 5"},
        {"X", "{}", std::nullopt},
    };
    TranscriptParser parser;
    for (const auto& each : cases)
        EXPECT_EQ(claudeInputDetail(each.name, *parser.parse(each.input)), each.expected) << each.name;
}

}  // namespace
}  // namespace orvane::ToolTrace
