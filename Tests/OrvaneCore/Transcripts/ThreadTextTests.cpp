#include "OrvaneCore/Transcripts/ThreadText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "OrvaneCore/Transcripts/TranscriptLines.h"

namespace orvane::ThreadText {
namespace {

using testing::HasSubstr;
using testing::Not;
using TranscriptFeed::Entry;
using TranscriptFeed::Role;

constexpr double newYear = 1767225600;  // 2026-01-01T00:00:00Z
constexpr double hour = 3600;

Entry said(Role role, std::string text, std::optional<Date> at = std::nullopt) {
    return {.id = "1", .role = role, .text = std::move(text), .tool = {}, .target = {}, .attachments = {}, .at = at};
}

Entry tool(std::string name, std::string target, std::optional<std::string> failure = std::nullopt) {
    return {.id = "1",
            .role = failure ? Role::error : Role::tool,
            .text = failure.value_or(""),
            .tool = std::move(name),
            .target = std::move(target),
            .attachments = {},
            .at = {}};
}

const Heading heading{.title = "Mend #1 <login>\x1b[31m",
                      .provider = TranscriptProvider::claude,
                      .projectPath = "/home/ann/site_a",
                      .id = "8e8d",
                      .from = {newYear},
                      .to = {newYear + 25 * hour}};

std::vector<Entry> conversation() {
    Entry asked = said(Role::user, "Why \x1b]0;x\x07red\x1b[1m?\r\nAnd \xc2\x9b\x31mhow\a?", Date{newYear});
    asked.attachments = {{.name = "a.png", .path = "/tmp/a.png"}};
    return {asked,
            said(Role::thinking, "Hm"),
            said(Role::assistant, "I look.", Date{newYear + 60}),
            tool("Bash", "make"),
            said(Role::thinking, "So\nthat is it"),
            tool("Read", "/a"),
            tool("Read", "/b `c`", "no *such* file\n"),
            tool("Task", "Find the tests"),
            tool("Task", "", ""),
            said(Role::assistant, "```cpp\nint a;\n``` x\n", Date{newYear + 120}),
            said(Role::notice, "/compact now"),
            said(Role::notice, "context_compacted"),
            said(Role::notice, "turn_aborted: replaced"),
            said(Role::notice, "turn_aborted: interrupted"),
            said(Role::error, "API Error\nTry later"),
            tool("Bash", "true"),
            said(Role::user, "Next", Date{newYear + 25 * hour}),
            said(Role::user, "And this"),
            said(Role::thinking, "Well")};
}

TEST(ThreadTextTest, ReadsAsAConversationInATerminal) {
    EXPECT_EQ(text(heading, conversation(), {.timeZone = "Europe/Paris"}), R"(Mend #1 <login> [31m
Agent: Claude Code
Project: /home/ann/site_a
Conversation: 8e8d
Time: 2026-01-01 01:00 – 2026-01-02 02:00

You · 2026-01-01 01:00
Why red?
And how?

  Attachment  /tmp/a.png

Claude Code
  Thinking

I look.

  3 tools: Read 2, Bash 1; 1 failed
  Subagent  Find the tests
  Subagent  [failed]

```cpp
int a;
``` x


Note: /compact now

Note: The context was compacted.

Note: The turn was interrupted: replaced

Note: The turn was interrupted.

Error: API Error
Try later

  Bash  true

You · 2026-01-02 02:00
Next

You
And this

Claude Code
  Thinking
)");
}

TEST(ThreadTextTest, UnfoldsRunsAndWritesMarkdown) {
    EXPECT_THAT(text(heading, conversation(), {.tools = Tools::unfolded}), HasSubstr(R"(
Claude Code
  Thinking  Hm

I look.

  Bash  make
  Thinking  So that is it
  Read  /a
  Read  /b `c`  [failed: no *such* file]
  Subagent  Find the tests
)"));
    const std::string document = text(heading, conversation(), {.form = Form::markdown, .tools = Tools::unfolded});
    EXPECT_THAT(document, HasSubstr(R"(# Mend \#1 \<login\> \[31m

- Agent: Claude Code
- Project: /home/ann/site\_a
- Conversation: 8e8d
- Time: 2026-01-01 00:00 – 2026-01-02 01:00

## You · 2026-01-01 00:00

Why red?
And how?

- **Attachment** `/tmp/a.png`

## Claude Code

- **Thinking** `Hm`

I look.

- **Bash** `make`
)"));
    EXPECT_THAT(document, HasSubstr("- **Read** `` /b `c` `` — failed: no \\*such\\* file\n- **Subagent** `Find"));
    EXPECT_THAT(document, HasSubstr("int a;\n``` x\n\n```\n\n> **Note:** /compact now\n\n"))
        << "an open block is closed";
    EXPECT_THAT(document, HasSubstr("> **Error:** API Error\n> Try later\n"));
    EXPECT_THAT(text(heading, conversation(), {.form = Form::markdown}),
                HasSubstr("- 3 tools: Read 2, Bash 1; 1 failed"));
}

TEST(ThreadTextTest, TellsTheTimeOnceOfAShortConversation) {
    const std::pair<double, const char*> ends[] = {{30, "Time: 2026-01-01 00:00\n"},
                                                   {600, "Time: 2026-01-01 00:00 – 00:10\n"},
                                                   {25 * hour, "Time: 2026-01-01 00:00 – 2026-01-02 01:00\n"}};
    for (const auto& [seconds, line] : ends)
        EXPECT_THAT(text({.from = {newYear}, .to = {newYear + seconds}}, {}, {}), testing::EndsWith(line));
}

TEST(ThreadTextTest, ClosesOnlyTheFencesThatAreOpen) {
    const std::pair<const char*, const char*> ends[] = {
        {"```\na\n```", "```\n"}, {"````\n```\n", "\n````\n"},   {"~~~\n```\n~~~~ \n", "~~~~ \n\n"},
        {"    ```\n", "```\n\n"}, {"```a``` is code", "code\n"}, {"``` a\n~~~", "~~~\n```\n"}};
    for (const auto& [body, end] : ends)
        EXPECT_TRUE(text({}, {said(Role::user, body)}, {.form = Form::markdown}).ends_with(end)) << body;
}

TEST(ThreadTextTest, ARecordedConversationReadsThrough) {
    const TranscriptLines file(recordedTranscript("claude-interactive-perm.jsonl"));
    const auto form = TranscriptForm::normalized(TranscriptProvider::claude, file.lines);
    const auto entries = TranscriptFeed::entries(form.lines(), TranscriptProvider::claude, 100);
    const std::string shown = text({.title = "Permissions"}, entries, {.tools = Tools::unfolded});
    for (const char* part : {"\nYou · 2026-", "\nClaude Code · ", "\n  Bash  ", "\n  Write  ", "  [failed: "})
        EXPECT_THAT(shown, HasSubstr(part));
    EXPECT_THAT(shown, Not(HasSubstr("\x1b")));
}

TEST(ThreadTextTest, KeepsTheNewestThatFit) {
    const std::vector<Entry> entries = conversation();
    const auto sizeOf = [](const Entry& entry) { return Json::write(entry.encode()).size() + 1; };
    const std::size_t lastTwo = sizeOf(entries.back()) + sizeOf(entries[entries.size() - 2]);
    EXPECT_EQ(newestWithin(entries, lastTwo), std::vector<Entry>(entries.end() - 2, entries.end()));
    EXPECT_EQ(newestWithin(entries, lastTwo - 1).size(), 1U);
    EXPECT_EQ(newestWithin(entries, 0).size(), 0U);
    EXPECT_EQ(newestWithin(entries, 1 << 20), entries);
}

}  // namespace
}  // namespace orvane::ThreadText
