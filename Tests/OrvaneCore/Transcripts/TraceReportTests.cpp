#include "OrvaneCore/Transcripts/TraceReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Transcripts/SubagentTrace.h"
#include "OrvaneCore/Transcripts/TraceText.h"

namespace orvane {
namespace {

using testing::HasSubstr;

ToolEvent event(std::string id, std::string name, std::string target, std::optional<bool> succeeded = true) {
    const ToolCategory category = ToolTrace::category(name);
    return {.id = std::move(id),
            .name = std::move(name),
            .category = category,
            .target = std::move(target),
            .timestamp = 1767225600,
            .succeeded = succeeded};
}

TEST(TraceReportTest, TellsWhatWasDoneAlsoBySubagents) {
    ToolEvent failed = event("3", "Bash", "curl x | sh", false);
    failed.error = "exit\x1b 2";
    const std::vector<AgentRun> runs = {{.id = "a1",
                                         .toolUseID = "4",
                                         .agentType = "Explore",
                                         .description = "Find the\ntests",
                                         .startedAt = {},
                                         .durationSeconds = 130,
                                         .succeeded = true,
                                         .events = {event("9", "Edit", "/p/a.cpp"), event("1", "Read", "/p/a.cpp")}},
                                        {.id = "b2", .events = {}}};
    const TraceReport report =
        TraceReport::of({event("1", "Read", "/p/a.cpp"), event("2", "Write", "/etc/x", std::nullopt), failed,
                         event("4", "Task", "Find the tests")},
                        runs, "/p");
    EXPECT_EQ(TraceText::text("Mend\tit", report, {}), R"(Mend it
5 tool calls, 1 failed, 1 without a result, 1 by subagents
By kind: read 1, edit 1, write 1, execute 1, subagent 1
Most used: Bash 1, Edit 1, Read 1, Task 1, Write 1

Files (2)
  a.cpp  [1 edit]
  /etc/x  [1 edit]

Failures (1)
  Bash  curl x | sh  [failed: exit 2]

Sensitive calls (1)
  Bash  curl x | sh  [failed: exit 2]

Subagents (2)
  Explore  Find the tests  [done, 2 tool calls, 2 min]
  b2  [no result, 0 tool calls]
)");
    const JsonValue encoded = report.encode();
    const JSONObject json(encoded);
    EXPECT_EQ(json.object("summary").object("countsByCategory").integer("execute"), 1);
    EXPECT_EQ(json.object("counts").integer("files"), 2);
    EXPECT_EQ(JSONObject(json.array("files").front()).string("firstAt"), "2026-01-01T00:00:00.000Z");
    EXPECT_EQ(JSONObject(json.array("failures").front()).string("id"), "3");
    EXPECT_EQ(JSONObject(json.array("subagents").front()).integer("tools"), 2);
    EXPECT_EQ(TraceText::text("", TraceReport::of({}, {}, std::nullopt), {}), "\n0 tool calls\n");
}

TEST(TraceReportTest, CutsLongListsAndSaysSo) {
    std::vector<ToolEvent> events;
    for (std::size_t index = 0; index < TraceReport::longestList + 2; ++index)
        events.push_back(event(std::to_string(index), "Read", std::to_string(index), false));
    const TraceReport report = TraceReport::of(std::move(events), {}, std::nullopt);
    const JsonValue encoded = report.encode();
    const JSONObject json(encoded);
    EXPECT_EQ(json.array("failures").size(), TraceReport::longestList);
    EXPECT_EQ(JSONObject(json.array("failures").front()).string("id"), "2") << "the newest calls";
    EXPECT_EQ(JSONObject(json.array("files").front()).string("path"), "0") << "the first files";
    EXPECT_EQ(json.object("counts").integer("failures"), 502);
    const std::string text = TraceText::text("", report, {});
    EXPECT_THAT(text, HasSubstr("Failures (502)\n  … and 2 more\n  Read  2  [failed]\n"));
    EXPECT_THAT(text, HasSubstr("\n  499\n  … and 2 more\n\nFailures"));
}

TEST(SubagentTraceTest, JoinsWhatLaunchesAndFilesTell) {
    const AgentRun background{.id = "call", .toolUseID = "call", .isAsync = true, .events = {}};
    const AgentRun ended{.id = "a2", .toolUseID = "t2", .durationSeconds = 5, .succeeded = false, .events = {}};
    const auto merged = SubagentTrace::merged(
        {background, ended},
        {{.id = "late", .startedAt = 9, .events = {}},
         {.id = "a1", .toolUseID = "call", .agentType = "X", .succeeded = true, .events = {event("1", "Read", "/a")}},
         {.id = "a2", .durationSeconds = 7, .succeeded = true, .events = {}},
         {.id = "early", .startedAt = 3, .events = {}}});
    ASSERT_EQ(merged.size(), 4U);
    EXPECT_EQ(merged[0].id, "a1");
    EXPECT_EQ(merged[0].agentType, "X");
    EXPECT_EQ(merged[0].succeeded, true);
    EXPECT_TRUE(merged[0].isAsync);
    EXPECT_EQ(merged[0].events.size(), 1U);
    EXPECT_EQ(merged[1], ended) << "its launch tells how it ended";
    EXPECT_EQ(merged[2].id, "early");
    EXPECT_EQ(merged[3].id, "late");
}

}  // namespace
}  // namespace orvane
