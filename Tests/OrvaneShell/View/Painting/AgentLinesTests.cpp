// What conversations and traces are in rows of a terminal.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Painting/ThreadLines.h"
#include "OrvaneShell/View/Painting/TraceLines.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using TranscriptFeed::Entry;
using TranscriptFeed::Role;

std::vector<std::string> texts(const std::vector<StyledLine>& lines) {
    std::vector<std::string> all;
    for (const StyledLine& line : lines)
        all.push_back(line.detail.empty() ? line.text : line.text + " | " + line.detail);
    return all;
}

TEST(ThreadLinesTests, MessagesAreWrappedAndRunsOfToolsAreOneRow) {
    const std::vector<Entry> entries = {
        {.id = "1", .role = Role::user, .text = "mend the\tlogin please"},
        {.id = "2", .role = Role::thinking, .text = "hm"},
        {.id = "3", .role = Role::tool, .tool = "Read", .target = "a.c"},
        {.id = "4", .role = Role::error, .text = "no", .tool = "Bash", .target = "make"},
        {.id = "5", .role = Role::tool, .tool = "Read", .target = "b.c"},
        {.id = "6", .role = Role::tool, .tool = "Task", .target = "look\naround"},
        {.id = "7", .role = Role::thinking, .text = "so"},
        {.id = "8", .role = Role::assistant, .text = "done\n\nreally"},
        {.id = "9", .role = Role::error, .text = "overloaded"},
        {.id = "a", .role = Role::user, .text = "", .attachments = {{.name = "shot.png", .path = "/s"}}}};
    EXPECT_THAT(texts(ThreadLines::of(entries, {}, 18)),
                ElementsAre("❯ mend the login", "  please", "▸ Read ×2, Bash · 1 failed", "◆ Task look around",
                            "▸ thinking", "● done", "  ", "  really", "✗ overloaded", "❯ [shot.png]"));
    // However long a message is, it is drawn in a moment.
    const std::vector<Entry> huge = {{.id = "1", .role = Role::user, .text = std::string(1 << 20, 'x')}};
    EXPECT_LT(ThreadLines::of(huge, {}, 40).size(), 100U);
}

TEST(TraceLinesTests, CountsCallsAndTheEndsOfLongPathsAreShown) {
    LiveTrace report;
    report.summary = {.countsByCategory = {{ToolCategory::read, 2}, {ToolCategory::execute, 7}},
                      .total = 9,
                      .subagents = 0,
                      .failures = 7,
                      .running = 1};
    report.running = {{.name = "Bash", .target = "npm test"}};
    report.failures.assign(7, {.name = "Bash", .target = "make", .error = "exit 2"});
    report.files = {{.path = "src/a/long/way/down/cart.js", .edits = 3}, {.path = "b.js", .edits = 0}};
    const auto lines = TraceLines::of(report, {}, 30);
    const auto shown = texts(lines);
    EXPECT_THAT(std::vector(shown.begin(), shown.begin() + 7),
                ElementsAre("9 calls · 7 failed · 1 running", "read 2  run 7", "", "Running (1)", "▶ Bash npm test", "",
                            "Failed (7)"));
    EXPECT_EQ(shown.size(), 7U + 2 * 5 + 4) << "the newest five failures, and the files";
    EXPECT_THAT(std::vector(shown.end() - 3, shown.end()),
                ElementsAre("Files (2)", "± …ng/way/down/cart.js | 3 edits", "· b.js"));
    for (const StyledLine& line : lines)
        EXPECT_LE(Text::displayWidth(line.text) + Text::displayWidth(line.detail), 30U) << line.text;
}

}  // namespace
}  // namespace orvane
