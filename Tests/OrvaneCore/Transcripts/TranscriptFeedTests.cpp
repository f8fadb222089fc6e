#include "OrvaneCore/Transcripts/TranscriptFeed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "OrvaneCore/Chat/ConversationHandoff.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/TranscriptLines.h"

namespace orvane::TranscriptFeed {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Entry> fed(Provider provider, std::vector<std::string> lines, int limit = 200) {
    const TranscriptLines file(std::move(lines));
    return entries(file.lines, provider, limit);
}

/// "tool Bash 'ls' +file: text" for each entry; what is missing is left out.
std::vector<std::string> shown(const std::vector<Entry>& entries) {
    std::vector<std::string> all;
    for (const Entry& entry : entries) {
        std::string& line = all.emplace_back(rawValue(entry.role));
        if (entry.tool) line += " " + *entry.tool;
        if (entry.target) line += " '" + *entry.target + "'";
        for (const auto& attachment : entry.attachments)
            line += " +" + attachment.name;
        if (!entry.text.empty()) line += ": " + entry.text;
    }
    return all;
}

std::string quoted(std::string_view text) {
    return Json::write(JsonValue(text));
}

std::string claudeUser(std::string_view text, const std::string& more = "") {
    return R"({"type":"user",)" + more + R"("message":{"content":)" + quoted(text) + "}}";
}

std::string claudeAssistant(const std::string& blocks, const std::string& more = "") {
    return R"({"type":"assistant",)" + more + R"("message":{"content":[)" + blocks + "]}}";
}

std::string codex(const std::string& payload) {
    return R"({"timestamp":"2026-11-21T01:50:02.747Z","type":"x","payload":)" + payload + "}";
}

TEST(TranscriptFeedTest, ReadsTheBlocksOfClaudeAndJoinsResultsWithTheirCalls) {
    const std::vector<Entry> entries =
        fed(Provider::claude,
            {"not JSON", "", R"({"type":"user","message":{"content":"cut)",
             claudeUser("  Fix it\n", R"("uuid":"u1","timestamp":"2026-11-21T01:45:22.396Z",)"),
             claudeAssistant(R"({"type":"thinking","thinking":"Hm"},{"type":"image"},{"type":"text","text":"Yes"},
             {"type":"tool_use","id":"t1","name":"Bash","input":{"description":"d","command":"ls\t -l\n\u00a0x"}},
             {"type":"tool_use","id":"t2","name":"Read","input":{"path":"","file_path":"/a b"}})",
                             R"("uuid":"a1",)"),
             R"({"type":"user","message":{"content":[{"type":"tool_result","tool_use_id":"t1","is_error":true,"content":
             [{"type":"text","text":"no\nsuch"}]},{"type":"tool_result","tool_use_id":"t2","content":"fine"},
             {"type":"tool_result","tool_use_id":"gone","is_error":true,"content":"x"},{"type":"text","text":"hidden"}]}})",
             claudeUser("meta", R"("isMeta":true,)"), claudeUser("side", R"("isSidechain":true,)"),
             claudeUser("What was said", R"("isCompactSummary":true,)"),
             R"({"type":"assistant","message":{"model":"<synthetic>","content":[{"type":"text","text":"API Error"}]}})",
             R"({"type":"assistant","message":{"content":"plain"}})"});
    EXPECT_THAT(shown(entries),
                ElementsAre("user: Fix it", "thinking: Hm", "assistant: Yes", "error Bash 'ls -l \xC2\xA0x': no such",
                            "tool Read '/a b'", "notice: What was said", "error: API Error", "assistant: plain"));
    EXPECT_EQ(entries[0].id, "u1");
    EXPECT_EQ(entries[0].at, Date{1795225522});
    EXPECT_EQ(entries[1].id, "a1");
    EXPECT_EQ(entries[2].id, "a1#2");
    EXPECT_EQ(entries[5].id, "5") << "the number of ids given before";
    EXPECT_EQ(entries[5].at, std::nullopt);
}

TEST(TranscriptFeedTest, ShowsOfAUsersTextWhatThePersonSaid) {
    const std::string envelope = ChatPromptEnvelope::wrap("look", {{.name = "a.png", .path = "/a.png"}});
    const std::string bare = ChatPromptEnvelope::wrap("", {{.name = "a.png", .path = "/a.png"}});
    const std::string mode = "<orvane-mode name=\"plan\">\nbriefing\n</orvane-mode>\n";
    const std::vector<ConversationHandoff::Message> said = {{"user", "one"}, {"assistant", "two"}};
    const struct {
        std::string text;
        std::vector<std::string> expected;
    } cases[] = {
        {" hi \n", {"user: hi"}},
        {mode + "hi", {"user: hi"}},
        {"<orvane-mode never closed", {}},
        {envelope, {"user +a.png: look"}},
        {mode + envelope, {"user +a.png: look"}},
        {bare, {"user +a.png"}},
        {ConversationHandoff::wrap(said, "go on"), {"user: one", "assistant: two", "user: go on"}},
        {ConversationHandoff::wrap(said, envelope), {"user: one", "assistant: two", "user +a.png: look"}},
        {"<command-name>/model</command-name><command-args>x</command-args>", {}},
        {"<command-name>/compact</command-name>\n<command-args></command-args>", {"notice: /compact"}},
        {"<command-message>m</command-message><command-name>/review</command-name><command-args>a b</command-args>",
         {"notice: /review a b"}},
        {"<local-command-stdout>x</local-command-stdout>", {}},
        {"[Request interrupted by user]", {}},
        {"Caveat: the messages below", {}},
        {" \xC2\xA0\n", {}},
        {"/home/a is a path", {"user: /home/a is a path"}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(shown(fed(Provider::claude, {claudeUser(each.text)})), each.expected) << each.text;
    const std::vector<Entry> handedOver =
        fed(Provider::claude, {claudeUser(ConversationHandoff::wrap(said, "go on"), R"("uuid":"u",)")});
    EXPECT_EQ(handedOver[0].id, "u:handoff0");
    EXPECT_EQ(handedOver[2].id, "u");
}

TEST(TranscriptFeedTest, ReadsCodexInItsOldAndItsNewForm) {
    const std::vector<Entry> entries = fed(
        Provider::codex,
        {codex(R"({"type":"user_message","message":"go"})"), codex(R"({"type":"agent_message","message":" done "})"),
         codex(
             R"({"type":"item_completed","item":{"type":"UserMessage","content":[{"x":1},{"type":"text","text":"new"}]}})"),
         codex(R"({"type":"item_completed","item":{"type":"AgentMessage","content":"answer"}})"),
         codex(R"({"type":"item_completed","item":{"type":"ContextCompaction"}})"),
         codex(R"({"type":"message","role":"user","content":"\"UserMessage\""})"),
         codex(R"({"type":"function_call","call_id":"c1","name":"exec_command","arguments":"{\"cmd\":\"make\"}"})"),
         codex(R"({"type":"function_call_output","call_id":"c1",
                   "output":"Process exited with code 2\nOutput:\nmake:\n no rule\n"})"),
         codex(R"({"type":"local_shell_call","call_id":"c2","action":{"command":["bash","-lc","ls"]}})"),
         codex(R"({"type":"local_shell_call_output","call_id":"c2",
                   "output":"{\"output\":\"bad\",\"metadata\":{\"exit_code\":1}}"})"),
         codex(R"({"type":"custom_tool_call","call_id":"c3","name":"apply_patch",
                   "input":"*** Begin Patch\n*** Delete File: a b.txt\n*** Update File: c\n"})"),
         codex(R"({"type":"custom_tool_call_output","call_id":"c3",
                   "output":"Process exited with code 0\nOutput:\nexited with code 1"})"),
         codex(R"({"type":"custom_tool_call","call_id":"c4","name":"exec","input":"plain words"})"),
         codex(R"({"type":"web_search_call","status":"failed","action":{"query":"a\n b"}})"),
         codex(R"({"type":"turn_aborted","reason":"interrupted","turn_id":"turn"})"),
         codex(R"({"type":"context_compacted"})")});
    EXPECT_THAT(shown(entries), ElementsAre("user: go", "assistant: done", "user: new", "assistant: answer",
                                            "notice: context_compacted", "error exec_command 'make': make: no rule",
                                            "error shell 'bash -lc ls': bad", "tool apply_patch 'a b.txt'",
                                            "tool exec 'plain words'", "error web_search 'a b'",
                                            "notice: turn_aborted: interrupted", "notice: context_compacted"));
    EXPECT_EQ(entries[10].id, "turn");
    EXPECT_EQ(entries[11].id, "11");
}

TEST(TranscriptFeedTest, ALineOfGeminiTakesThePlaceOfAnEarlierOneWithItsId) {
    const std::vector<Entry> entries =
        fed(Provider::gemini,
            {R"({"id":"u","type":"user","content":[{"text":"do "},{"text":"it"},{"functionResponse":{}}]})",
             R"({"id":"g","type":"gemini","timestamp":"2026-11-21T01:00:00Z","content":"Reading"})",
             R"({"id":"s","type":"user","content":"/chat save it"})",
             R"({"id":"g","type":"gemini","timestamp":"2026-11-21T01:00:00Z","content":"Reading","toolCalls":[
             {"name":"read_file","args":{"file_path":"a"},"status":"success","timestamp":"2026-11-21T01:00:09Z"},
             {"name":"replace","args":{"file_path":"b"},"status":"cancelled"},
             {"name":"run_shell_command","args":{"command":"x"},"status":"error",
              "result":[{"functionResponse":{"response":{"error":"it\n failed"}}}]}]})",
             R"({"$set":{"messages":[{"id":"u","type":"user","content":"do it"}]}})",
             R"({"type":"error","content":"quota"})", R"({"type":"info","content":"not \"type\":\"error\""})"});
    EXPECT_THAT(shown(entries),
                ElementsAre("user: do it", "assistant: Reading", "tool read_file 'a'", "error replace 'b'",
                            "error run_shell_command 'x': it failed", "notice: chat save it", "error: quota"));
    EXPECT_EQ(entries[2].id, "g#1");
    EXPECT_EQ(entries[2].at, Date{1795222809});
}

TEST(TranscriptFeedTest, KeepsWhatIsNeededOfLinesTooLongToParse) {
    const std::string dump(300000, 'x');
    const std::string longText = R"(,"text":")" + dump + "\"";
    EXPECT_THAT(
        shown(fed(
            Provider::claude,
            {R"({"type":"assistant","timestamp":"2026-11-21T01:45:22.396Z","message":{"id":"m","content":[{"type":"tool_use","id":"t1","name":"Write","input":{"file_path":"/a\tb","content":")" +
                 dump + "\"}}]}}",
             R"({"type":"user","message":{"content":[{"type":"tool_result","is_error":true,"content":")" + dump +
                 R"(","tool_use_id":"t1"}]}})",
             claudeUser("x" + dump), claudeAssistant(R"({"type":"text")" + longText + "}")})),
        ElementsAre("error Write '/a b'"));
    EXPECT_THAT(
        shown(fed(
            Provider::codex,
            {codex(
                 R"({"type":"function_call","call_id":"c1","name":"exec_command","arguments":"{\"cmd\":\"echo \\\"a\\\" \\\\\",\"x\":\")" +
                 dump + "\\\"}\"}"),
             codex(R"({"type":"function_call_output","call_id":"c1","output":"exited with code 7\nOutput:\n)" + dump +
                   "\"}"),
             codex(R"({"type":"agent_message","message":")" + dump + "\"}")})),
        ElementsAre(R"(error exec_command 'echo "a" \')"));
    EXPECT_THAT(
        shown(fed(
            Provider::gemini,
            {R"({"id":"g","type":"gemini","content":"Writing","toolCalls":[{"id":"t","name":"write_file","args":{"file_path":"a","content":")" +
             dump + "\"}}]}"})),
        ElementsAre("assistant: Writing", "tool write_file 'a'"));
}

TEST(TranscriptFeedTest, CutsTextsByCharacters) {
    const auto text = [](const std::string& body) { return fed(Provider::claude, {claudeUser(body)}).at(0).text; };
    std::string accented;
    for (int count = 0; count < 24000; ++count)
        accented += "e\xCC\x81";
    EXPECT_EQ(text(accented), accented);
    EXPECT_EQ(text(accented + "x"), accented + "…");
    const std::string spaced = std::string(23999, 'a') + " ";
    EXPECT_EQ(text("\n" + spaced + "b"), std::string(23999, 'a') + "…");
    const auto thought =
        fed(Provider::claude, {claudeAssistant(R"({"type":"thinking","thinking":")" + std::string(5000, 't') + "\"}")});
    EXPECT_EQ(thought.at(0).text, std::string(4000, 't'));
    const auto call = fed(
        Provider::claude,
        {claudeAssistant(R"({"type":"tool_use","name":"Bash","input":{"command":")" + std::string(301, 'c') + "\"}}")});
    EXPECT_EQ(call.at(0).target, std::string(300, 'c'));
}

TEST(TranscriptFeedTest, ReadsDatesByThePlacesOfTheirDigits) {
    const struct {
        std::string text;
        std::optional<Date> expected;
    } cases[] = {
        {"1970-01-02T00:00:01Z", Date{86401}},     {"2024/02/29 12-30-00", Date{1709209800}},
        {"2023-02-31T00:00:00", Date{1677801600}},  // as the 3rd of March
        {"2024-00-01T00:00:00", std::nullopt},     {"2024-13-01T00:00:00", std::nullopt},
        {"2024-01-32T00:00:00", std::nullopt},     {"2024-01-0xT00:00:00", std::nullopt},
        {"2024-01-01T00:00", std::nullopt},
    };
    for (const auto& each : cases) {
        const auto entries = fed(Provider::claude, {claudeUser("x", R"("timestamp":")" + each.text + "\",")});
        EXPECT_EQ(entries.at(0).at, each.expected) << each.text;
    }
}

TEST(TranscriptFeedTest, HoldsAWindowAndForgetsTheCallsBeforeIt) {
    std::vector<std::string> lines = {claudeAssistant(R"({"type":"tool_use","id":"old","name":"Bash"})")};
    for (int count = 0; count < 1000; ++count)
        lines.push_back(claudeUser("prompt " + std::to_string(count), R"("uuid":"same",)"));
    lines.push_back(claudeAssistant(R"({"type":"tool_use","id":"new","name":"Bash"})"));
    for (const char* id : {"old", "new"})
        lines.push_back(
            R"({"type":"user","message":{"content":[{"type":"tool_result","is_error":true,"tool_use_id":")" +
            std::string(id) + "\"}]}}");
    for (const int limit : {-1, 0})
        EXPECT_THAT(fed(Provider::claude, lines, limit), IsEmpty());
    const std::vector<Entry> last = fed(Provider::claude, lines, 3);
    EXPECT_THAT(shown(last), ElementsAre("user: prompt 998", "user: prompt 999", "error Bash"));
    const std::vector<Entry> all = fed(Provider::claude, lines, 1002);
    ASSERT_EQ(all.size(), 1002U);
    EXPECT_EQ(all.front().role, Role::error) << "its call was still held";
    std::set<std::string> ids;
    for (const Entry& entry : all)
        ids.insert(entry.id);
    EXPECT_EQ(ids.size(), all.size());
}

TEST(TranscriptFeedTest, FoldsToolsAndThoughtsButNotTheLaunchOfAnAgent) {
    const auto make = [](std::string id, Role role, std::optional<std::string> tool = {}) {
        return Entry{.id = std::move(id), .role = role, .text = "x", .tool = std::move(tool)};
    };
    const std::vector<Entry> entries = {
        make("1", Role::user),          make("2", Role::thinking),     make("3", Role::tool, "Bash"),
        make("4", Role::error, "Bash"), make("5", Role::tool, "Task"), make("6", Role::tool, "Read"),
        make("7", Role::error),         make("8", Role::error, ""),    make("9", Role::tool, "Read"),
    };
    std::vector<std::string> items;
    for (const ThreadItem& item : threadItems(entries)) {
        const auto* const activity = std::get_if<ThreadItem::Activity>(&item.item);
        const std::string kind = activity != nullptr ? "x" + std::to_string(activity->entries.size())
                                 : std::holds_alternative<ThreadItem::Agent>(item.item) ? " agent"
                                                                                        : "";
        items.push_back(item.id() + kind);
    }
    EXPECT_THAT(items, ElementsAre("1", "2x3", "5 agent", "6x1", "7", "8", "9x1"));
}

TEST(TranscriptFeedTest, AnEntryIsReadBackFromItsJson) {
    const Entry full{.id = "i",
                     .role = Role::tool,
                     .text = "t",
                     .tool = "Bash",
                     .target = "ls",
                     .attachments = {{.name = "n", .path = "/p"}},
                     .at = Date{1795225522}};
    EXPECT_EQ(Json::write(full.encode()),
              R"({"at":"2026-11-21T01:45:22.000Z","attachments":[{"name":"n","path":"/p"}],"id":"i","role":"tool",)"
              R"("target":"ls","text":"t","tool":"Bash"})");
    for (const Entry& entry : {full, Entry{.id = "only"}})
        EXPECT_EQ(Entry::decode(entry.encode()), entry);
    EXPECT_EQ(Entry::decode(*Json::parse(R"({"id":"i","role":"king"})")), std::nullopt);
}

TEST(TranscriptFeedTest, ShowsTheRecordedConversationsAsTheyWereRead) {
    const auto recorded = [](Provider provider, const std::string& name) {
        return shown(fed(provider, recordedTranscript(name + ".jsonl")));
    };
    const std::string markdown =
        "assistant: ## Heading\n\nA **bold** word, `code`, and a list:\n\n- first item\n- second item\n\n"
        "```python\nprint(\"hello\")\n```\n\n| a | b |\n|---|---|\n| 1 | 2 |\n\nDone.";
    EXPECT_THAT(
        recorded(Provider::claude, "claude-interactive-main"),
        ElementsAre("user: fake:slow start a long job", testing::StartsWith("assistant: Step 1 of the long job."),
                    "user: queued words", "user: fake:quiet wait without output", "assistant: Silence is over.",
                    "user: fake:markdown", markdown));
    EXPECT_THAT(
        recorded(Provider::claude, "claude-interactive-perm"),
        ElementsAre("user: fake:bash run it", "assistant: I will run a command.",
                    "tool Bash 'echo hello-from-tool > out.txt && cat out.txt'",
                    "assistant: The command printed its greeting.", "user: fake:write a file",
                    "assistant: I will create a file.", "tool Write '/home/demo/proj/notes.txt'",
                    "assistant: The file was written.", "user: fake:edit a file", "assistant: I will read it first.",
                    "tool Read '/home/demo/proj/sample.txt'",
                    testing::StartsWith("error Edit '/home/demo/proj/sample.txt': The user doesn't want to proceed"),
                    "user: fake:bashlong tick", "tool Bash 'for i in 1 2 3 4 5 6; do echo tick $i; sleep 1; done'",
                    "assistant: Ticking is over."));
    EXPECT_THAT(recorded(Provider::claude, "claude-stream-slash"), ElementsAre("notice: /context", "notice: /usage"));
    EXPECT_THAT(recorded(Provider::codex, "codex-interactive-main"),
                ElementsAre("user: fake:slow start a long job", "notice: turn_aborted: interrupted",
                            "user: fake:quiet wait without output", "assistant: Silence is over.",
                            "user: fake:markdown", markdown));
    EXPECT_THAT(recorded(Provider::codex, "codex-exec-bashfail"),
                ElementsAre("user: fake:bashfail run",
                            "error exec_command 'ls /no-such-dir; exit 3': ls: cannot access '/no-such-dir': No such "
                            "file or directory",
                            "assistant: The command failed, as planned."));
    EXPECT_THAT(recorded(Provider::gemini, "gemini-print-tool-yolo"),
                ElementsAre("user: fake:bash run", "assistant: I will run a command.",
                            "tool run_shell_command 'echo hello-from-tool > out.txt && cat out.txt'",
                            "assistant: The command printed its greeting."));
}

}  // namespace
}  // namespace orvane::TranscriptFeed
