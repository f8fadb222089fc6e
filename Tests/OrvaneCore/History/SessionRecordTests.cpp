#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "OrvaneCore/History/HistoryIndex.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/History/TitleScan.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/TitleCut.h"

namespace orvane {
namespace {

using SessionHistory::Provider;
using ::testing::ElementsAre;
using Lines = std::vector<std::string_view>;

constexpr Date modified{1795000000};

std::optional<SessionRecord> record(Provider provider, const Lines& head, const Lines& tail = {}) {
    return SessionHistory::record("/logs/file-name.jsonl", head, tail, provider, modified, 1000, "/hint/of-folder");
}

std::string linesOf(const std::string& name) {
    std::ifstream file(std::string(ORVANE_SOURCE_DIR) + "/Tests/Recordings/Transcripts/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Lines split(std::string_view text) {
    Lines lines;
    for (; !text.empty(); text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1))
        lines.push_back(text.substr(0, text.find('\n')));
    return lines;
}

TEST(SessionRecordTest, recordingsOfTheAgentsTellTheirConversations) {
    const struct {
        const char* file;
        Provider provider;
        const char* id;
        const char* project;
        std::int64_t messages;
        std::int64_t tokens;
        std::vector<std::string> prompts;
    } cases[] = {
        {"claude-interactive-main.jsonl",
         Provider::claude,
         "8e8d1a93-b2a9-4139-b962-cb164c5844c8",
         "/home/demo/proj",
         8,
         19615,
         {"fake:slow start a long job", "queued words", "fake:quiet wait without output", "fake:markdown"}},
        {"codex-interactive-main.jsonl",
         Provider::codex,
         "01a1fbce-6095-7170-a782-d37c5e75cf09",
         "/home/demo4/proj",
         5,
         3120,
         {"fake:slow start a long job", "fake:quiet wait without output", "fake:markdown"}},
        {"gemini-print-tool-yolo.jsonl",
         Provider::gemini,
         "0d13d2ac-fea8-4ffc-803b-5fdde4694e47",
         "/hint/of-folder",
         3,
         3160,
         {"fake:bash run"}},
    };
    for (const auto& each : cases) {
        const std::string text = linesOf(each.file);
        const Lines lines = split(text);
        ASSERT_FALSE(lines.empty()) << each.file;
        EXPECT_EQ(SessionHistory::prompts(lines, {}, each.provider), each.prompts) << each.file;
        const auto found = record(each.provider, lines);
        ASSERT_TRUE(found) << each.file;
        EXPECT_EQ(found->id, each.id);
        EXPECT_EQ(found->projectPath, each.project);
        EXPECT_EQ(found->messageCount, each.messages) << each.file;
        EXPECT_EQ(found->approximateTokens, each.tokens) << each.file;
        EXPECT_LT(found->firstPromptAt, found->lastActivityAt) << each.file;
        EXPECT_EQ(record(each.provider, lines, lines), found) << "an end that repeats the head counts once";
    }
    const std::string slash = linesOf("claude-stream-slash.jsonl");
    EXPECT_EQ(record(Provider::claude, split(slash)), std::nullopt) << "commands of the program alone";
}

TEST(SessionRecordTest, theOtherRecordingsAreReadToo) {
    for (const char* name :
         {"claude-interactive-perm", "claude-stream-errors", "codex-exec-bashfail", "codex-exec-plain",
          "codex-server-plain", "gemini-interactive-main", "gemini-interactive-perm"}) {
        const std::string text = linesOf(std::string(name) + ".jsonl");
        const auto provider = *fromRawValue<Provider>(std::string(name).substr(0, std::string(name).find('-')));
        const auto found = record(provider, split(text));
        ASSERT_TRUE(found) << name;
        EXPECT_TRUE(found->preview.starts_with("fake:")) << name << ": " << found->preview;
        EXPECT_EQ(found->title, provider == Provider::gemini
                                    ? "Fake summary."
                                    : SessionHistory::prompts(split(text), {}, provider).front());
    }
}

TEST(SessionRecordTest, aPromptIsWhatAPersonAskedForAndNothingElse) {
    const struct {
        Provider provider;
        const char* line;
        const char* prompt;
    } cases[] = {
        {Provider::claude, R"({"type":"user","message":{"content":" fix it \n"}})", "fix it"},
        {Provider::claude,
         R"({"type":"user","message":{"content":[{"type":"text","text":"<ide>x</ide>"},{"type":"text","text":"why?"},{"type":"image"}]}})",
         "why?"},
        {Provider::claude, R"({"type":"user","isMeta":true,"message":{"content":"x"}})", ""},
        {Provider::claude, R"({"type":"user","isSidechain":true,"message":{"content":"x"}})", ""},
        {Provider::claude, R"({"type":"user","isCompactSummary":true,"message":{"content":"x"}})", ""},
        {Provider::claude, R"({"type":"user","toolUseResult":{"a":1},"message":{"content":"x"}})", ""},
        {Provider::claude, R"({"type":"user","message":{"content":"<command-name>/model</command-name>"}})", ""},
        {Provider::claude, R"({"type":"user","message":{"content":"Caveat: the messages"}})", ""},
        {Provider::claude,
         R"({"type":"user","message":{"content":[{"type":"text","text":"[Request interrupted by user for tool use]"}]}})",
         ""},
        {Provider::claude, R"({"type":"progress","data":{"message":{"type":"user","message":{"content":"x"}}}})", ""},
        {Provider::claude, R"(x{"type":"user","message":{"content":"x"}})", ""},
        {Provider::claude,
         R"({"type":"user","message":{"role":"user","content":[{"type":"text","text":"see \"this\" pic\u00)",
         "see \"this\" pic"},
        {Provider::claude, R"({"type":"user","message":{"role":"user","content":[{"tool_use_id":"t","content":"out)",
         ""},
        {Provider::codex, R"({"type":"event_msg","payload":{"type":"user_message","message":"<b> is bold"}})",
         "<b> is bold"},
        {Provider::codex,
         R"({"type":"response_item","payload":{"type":"message","role":"user","content":[{"text":"# AGENTS.md instructions for /x"},{"text":"a"},{"text":"b"}]}})",
         "a\nb"},
        {Provider::codex, R"({"type":"message","role":"user","content":[{"type":"input_text","text":"early form"}]})",
         "early form"},
        {Provider::codex,
         R"({"type":"response_item","payload":{"type":"message","role":"user","content":[{"text":"<environment_context>x"}]}})",
         ""},
        {Provider::codex,
         R"({"type":"compacted","payload":{"replacement_history":[{"type":"message","role":"user","content":[{"text":"x"}]}]}})",
         ""},
        {Provider::gemini, R"({"id":"1","type":"user","content":[{"text":"<session_context>x"},[{"text":"deep"}]]})",
         "deep"},
        {Provider::gemini, R"({"id":"1","type":"user","content":[{"functionResponse":{"output":"x"}}]})", ""},
        {Provider::gemini, R"({"messages":[{"id":"1","type":"user","content":"whole document"}]})", "whole document"},
    };
    for (const auto& [provider, line, prompt] : cases) {
        const auto prompts = SessionHistory::prompts(Lines{line}, {}, provider);
        if (*prompt == '\0') {
            EXPECT_TRUE(prompts.empty()) << line;
        } else {
            EXPECT_THAT(prompts, ElementsAre(prompt)) << line;
        }
    }
}

TEST(SessionRecordTest, countsAndTimesOfAClaudeTranscript) {
    const Lines head = {
        R"({"type":"mode","sessionId":"one","timestamp":"2026-01-01T00:00:00Z"})",
        R"({"type":"user","uuid":"u1","cwd":"/w/a","timestamp":"2026-01-01T00:00:05Z","message":{"content":"first"}})",
        R"({"type":"assistant","uuid":"u2","message":{"id":"m","usage":{"input_tokens":5,"output_tokens":7}}})",
        R"({"type":"assistant","uuid":"u3","message":{"id":"m","usage":{"input_tokens":5,"output_tokens":7}}})",
        R"({"type":"user","uuid":"u4","toolUseResult":{},"message":{"content":[]}})"};
    const Lines tail = {
        R"({"type":"user","uuid":"u4","toolUseResult":{},"message":{"content":[]}})",
        R"({"type":"ai-title","aiTitle":"A name","sessionId":"one"})",
        R"({"type":"user","uuid":"u5","cwd":"/w/b","sessionId":"two","timestamp":"2026-01-02T00:00:00Z","message":{"content":"first"}})",
        R"({"type":"user","uuid":"u6","timestamp":"2026-01-01T12:00:00Z","message":{"content":"second"}})"};
    EXPECT_EQ(record(Provider::claude, head, tail),
              (SessionRecord{.id = "one",
                             .provider = Provider::claude,
                             .projectPath = "/w/a",
                             .title = "A name",
                             .firstPromptAt = *Date::parseIso8601("2026-01-01T00:00:05Z"),
                             .lastActivityAt = *Date::parseIso8601("2026-01-02T00:00:00Z"),
                             .messageCount = 6,
                             .approximateTokens = 12,
                             .filePath = "/logs/file-name.jsonl",
                             .preview = "first · second"}));
    const auto bare = record(Provider::claude, {R"({"type":"user","message":{"content":"x"}})"});
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->id, "file-name");
    EXPECT_EQ(bare->projectPath, "/hint/of-folder");
    EXPECT_EQ(bare->firstPromptAt, modified);
    EXPECT_EQ(bare->lastActivityAt, modified);
}

TEST(SessionRecordTest, codexCountsWhatIsWrittenInTwoFormsOnce) {
    const std::string event = R"({"type":"event_msg","payload":{"type":"user_message","message":"go on"}, "n":)";
    const std::string item =
        R"({"type":"response_item","payload":{"type":"message","role":"user","content":[{"text":"go on"}]}, "n":)";
    const std::string usage =
        R"({"type":"event_msg","payload":{"type":"token_count","info":{"total_token_usage":{"total_tokens":40},"last_token_usage":{"total_tokens":30}}}, "n":)";
    const std::string lines[] = {event + "1}", item + "2}", event + "3}", item + "4}", usage + "5}", usage + "6}"};
    const auto found = record(Provider::codex, Lines(std::begin(lines), std::end(lines)));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->messageCount, 2);
    EXPECT_EQ(found->approximateTokens, 30) << "the same response, told twice";
    EXPECT_EQ(found->preview, "go on");

    const std::string meta =
        R"({"timestamp":"2026-01-01T00:00:00Z","type":"session_meta","payload":{"id":"the-id","cwd":"/w/\u00e9t\u00e9","text":")" +
        std::string(20000, 'x') + R"("}})";
    const auto large = record(Provider::codex, {meta, lines[0]});
    ASSERT_TRUE(large);
    EXPECT_EQ(large->id, "the-id");
    EXPECT_EQ(large->projectPath, "/w/été");
    EXPECT_EQ(large->firstPromptAt, *Date::parseIso8601("2026-01-01T00:00:00Z"));
}

TEST(SessionRecordTest, geminiMessagesAreReplacedCopiedAndTakenBack) {
    const std::string header = R"({"sessionId":"g","kind":"main","startTime":"2026-01-01T00:00:00Z"})";
    const std::string ask = R"({"id":"1","type":"user","content":"one"})";
    const std::string answer = R"({"id":"2","type":"gemini","content":"","tokens":{"total":5}})";
    const std::string grown = R"({"id":"2","type":"gemini","content":"yes","tokens":{"total":9}})";
    const std::string copy =
        R"({"$set":{"messages":[{"id":"8","type":"user","content":[{"text":"<x>"},{"text":"one"}]}],"lastUpdated":"2026-01-03T00:00:00Z"}})";
    const auto found = record(Provider::gemini, {header, ask, answer, grown, copy});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->messageCount, 2);
    EXPECT_EQ(found->approximateTokens, 9);
    EXPECT_EQ(found->lastActivityAt, *Date::parseIso8601("2026-01-03T00:00:00Z"));

    const std::string more = R"({"id":"3","type":"user","content":"two"})";
    const auto rewound = record(Provider::gemini, {header, ask, grown, more, R"({"$rewindTo":"2"})", copy});
    ASSERT_TRUE(rewound);
    EXPECT_EQ(rewound->preview, "one");
    EXPECT_EQ(rewound->messageCount, 1);
    EXPECT_EQ(record(Provider::gemini, {header, ask, R"({"$rewindTo":"1"})"}), std::nullopt);
    EXPECT_EQ(record(Provider::gemini, {R"({"sessionId":"g","kind":"subagent"})", ask}), std::nullopt);
}

/// Cut anywhere, with any bytes: a worse record or none, and nothing else.
TEST(SessionRecordTest, brokenLinesAreNoFailure) {
    for (const char* name : {"claude-interactive-main", "codex-interactive-main", "gemini-interactive-main"}) {
        std::string text = linesOf(std::string(name) + ".jsonl");
        const auto provider = *fromRawValue<Provider>(std::string(name).substr(0, std::string(name).find('-')));
        for (std::size_t size = 0; size < text.size(); size += 397) {
            std::string cut = text.substr(0, size);
            if (size > 40) cut[size - 40] = '\xff';
            if (const auto found = record(provider, split(cut))) {
                EXPECT_TRUE(Text::isValidUtf8(found->title + found->preview + found->projectPath + found->id));
            }
        }
    }
}

TEST(TitleCutTest, aTitleIsCutBehindAWord) {
    EXPECT_EQ(titleCut("  one\n\ttwo  ", 72), "one two");
    EXPECT_EQ(titleCut("one two three", 13), "one two three");
    EXPECT_EQ(titleCut("one two three", 12), "one two…");
    EXPECT_EQ(titleCut("one two three", 8), "one two…");
    EXPECT_EQ(titleCut("abcdefghij", 5), "abcd…");
    EXPECT_EQ(titleCut("a bcdefghijkl", 8), "a bcdef…");
    EXPECT_EQ(Text::characterCount(titleCut(std::string(5000, 'x') + " y", 72)), 72U);
}

TEST(TitleScanTest, namesASessionByWhatItsLinesTell) {
    SessionHistory::TitleScan scan;
    const auto absorb = [&](Provider provider, const std::string& line) {
        SessionHistory::absorbTitle(line, provider, scan);
        return scan.resolved().value_or("");
    };
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"user","isSidechain":true,"message":{"content":"side"}})"), "side");
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"user","message":{"content":"main"}})"), "main");
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"user","message":{"content":"later"}})"), "main");
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"assistant","message":{"content":[{"input":{"summary":"x"}}]}})"),
              "main");
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"summary","summary":"Sum"})"), "Sum");
    EXPECT_EQ(absorb(Provider::claude, R"({"type":"ai-title","aiTitle":"Name"})"), "Name");
    EXPECT_EQ(SessionHistory::TitleScan::decode(scan.encode()), scan);
    scan = {};
    EXPECT_EQ(absorb(Provider::gemini, R"({"$set":{"summary":"Sum"}})"), "Sum");
    scan = {};
    for (int line = 0; line < SessionHistory::titleProbeLimit; ++line)
        absorb(Provider::codex, "{}");
    EXPECT_EQ(absorb(Provider::codex, R"({"payload":{"type":"user_message","message":"late"}})"), "");
}

TEST(HistoryIndexTest, aFileIsReadAgainWhenItsTimeOrSizeIsAnother) {
    HistoryIndex index;
    index.store({.id = "a", .filePath = "/a", .preview = "p"}, {1000.5}, 10);
    index.storeNone("/none", {2000.123456}, 20);
    const auto again = HistoryIndex::decode(Json::write(index.encode()));
    EXPECT_EQ(again, index);
    EXPECT_EQ(again.records().size(), 1U);
    EXPECT_FALSE(again.needsReindex("/a", {1000.5009}, 10));
    EXPECT_TRUE(again.needsReindex("/a", {1000.502}, 10));
    EXPECT_TRUE(again.needsReindex("/a", {1000.5}, 11));
    EXPECT_FALSE(again.needsReindex("/none", {2000.123456}, 20));
    EXPECT_TRUE(again.needsReindex("/new", {1}, 1));
    HistoryIndex pruned = again;
    EXPECT_FALSE(pruned.prune({"/a", "/none"}));
    EXPECT_TRUE(pruned.prune({"/none"}));
    EXPECT_TRUE(pruned.records().empty());

    std::string other = Json::write(index.encode());
    other.replace(other.rfind("\"version\":1"), 11, "\"version\":2");
    for (const std::string& text : {other, std::string(), std::string("[]"), other.substr(0, other.size() / 2)})
        EXPECT_EQ(HistoryIndex::decode(text), HistoryIndex()) << text;
    const auto damaged = HistoryIndex::decode(
        R"({"version":1,"entries":{"/a":{"mtime":1,"byteSize":1,"record":{"id":""}},"/b":7,"/c":{"mtime":1,"record":null}}})");
    EXPECT_TRUE(damaged.needsReindex("/a", {1}, 1));
    EXPECT_TRUE(damaged.records().empty());
}

}  // namespace
}  // namespace orvane
