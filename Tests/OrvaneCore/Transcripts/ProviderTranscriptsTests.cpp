#include <gtest/gtest.h>

#include "OrvaneCore/Support/Sha256.h"
#include "OrvaneCore/Transcripts/ClaudeTranscript.h"
#include "OrvaneCore/Transcripts/CodexTranscript.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "TranscriptLines.h"

namespace orvane {
namespace {

using Lines = std::vector<std::string>;
using Reading = std::optional<TranscriptReading>;

constexpr auto running = AgentPhase::running;
constexpr auto ended = AgentPhase::turnEnded;
constexpr auto asking = AgentPhase::awaitingApproval;

std::string claudeUser(const std::string& text, const std::string& more = "") {
    return R"({"type":"user","message":{"role":"user","content":")" + text + "\"}" + more + "}";
}

std::string claudeText(const std::string& text, int tokens, const std::string& more = "") {
    return R"({"type":"assistant","message":{"model":"opus","content":[{"type":"text","text":")" + text +
           R"("}],"usage":{"input_tokens":)" + std::to_string(tokens) + "}}" + more + "}";
}

const std::string claudeClear = claudeUser("<command-name>/clear</command-name>");

TEST(ClaudeTranscriptTest, theNewestRecordsTellTheReading) {
    const struct {
        const char* what;
        Lines lines;
        TranscriptReading expected;
    } cases[] = {
        {"a turn that ended",
         {claudeUser("Fix it"), claudeText("Done", 7)},
         {.model = "opus", .contextUsed = 7, .phase = ended, .sessionTitle = "Fix it"}},
        {"a usage of nothing is skipped",
         {claudeText("old", 7), claudeText("new", 0)},
         {.model = "opus", .contextUsed = 7, .phase = ended}},
        {"a clear behind the newest usage",
         {claudeText("Done", 7), claudeClear},
         {.didClearContext = true, .phase = ended}},
        {"a usage behind the clear",
         {claudeText("Done", 7), claudeClear, claudeText("Hi", 9)},
         {.model = "opus", .contextUsed = 9, .phase = ended}},
        {"a subagent says nothing",
         {claudeText("Done", 7), claudeText("more", 9, R"(,"isSidechain":true)"),
          claudeUser("task", R"(,"isSidechain":true,"permissionMode":"plan")")},
         {.model = "opus", .contextUsed = 7, .phase = ended}},
        {"what runs inside the CLI begins no turn",
         {claudeText("Done", 7), claudeUser("<command-name>/cost</command-name>"),
          claudeUser("hint", R"(,"isMeta":true)")},
         {.model = "opus", .contextUsed = 7, .phase = ended}},
        {"the newest mode and title",
         {claudeUser("one", R"(,"permissionMode":"plan")"), R"({"type":"permission-mode","permissionMode":"default"})",
          claudeUser("[image]")},
         {.permissionMode = "default", .phase = running, .sessionTitle = "one"}},
        {"thinking is no answer",
         {claudeUser("Why?"), R"({"type":"assistant","message":{"content":[{"type":"thinking","thinking":"hm"}]}})"},
         {.phase = running, .sessionTitle = "Why?"}},
        {"cut and foreign lines",
         {R"({"type":"user","message":{"content":"cut)", "", "null", R"("type":"user")",
          claudeText("Done", 7).substr(9)},
         {}},
    };
    for (const auto& each : cases) {
        const TranscriptLines file(each.lines);
        EXPECT_EQ(ClaudeTranscript::parse(file.lines).value_or(TranscriptReading()), each.expected) << each.what;
        EXPECT_EQ(ClaudeTranscript::parse(file.lines).has_value(), each.expected != TranscriptReading()) << each.what;
    }
}

TEST(ClaudeTranscriptTest, aPendingToolIsNamedAndItsQuestionRead) {
    const auto reading = [](const std::string& name, const std::string& input) {
        const TranscriptLines file({R"({"type":"assistant","message":{"content":[{"type":"tool_use","name":")" + name +
                                    R"(","input":)" + input + "}]}}"});
        return ClaudeTranscript::parse(file.lines).value_or(TranscriptReading());
    };
    EXPECT_EQ(reading("Bash", R"({"description":"List","command":"ls\n  -la"})"),
              TranscriptReading({.phase = running, .pendingToolName = "Bash", .pendingToolTarget = "ls -la"}));
    const auto asked = reading("AskUserQuestion", R"({"questions":[{"question":"Which?","options":[{"label":"Red"},)"
                                                  R"({"label":"Blue"}]},{"question":"Sure?"}]})");
    ASSERT_TRUE(asked.pendingRequest);
    EXPECT_EQ(*asked.pendingRequest, (ApprovalPolicy::Request{.kind = ApprovalPolicy::Request::Kind::choice,
                                                              .toolName = "AskUserQuestion",
                                                              .detail = "Which?",
                                                              .options = {"Red", "Blue"},
                                                              .questionIndex = 1,
                                                              .questionCount = 2}));
    for (const char* unreadable :
         {R"({"questions":[]})", R"({"questions":"?"})", R"({"questions":[{"options":[]}]})"}) {
        EXPECT_EQ(reading("AskUserQuestion", unreadable),
                  TranscriptReading({.phase = running, .pendingToolName = "AskUserQuestion"}))
            << unreadable;
    }
}

TEST(ClaudeTranscriptTest, aPastedImageIsAPromptThoughItsLineIsTooLongToParse) {
    const TranscriptLines file({claudeText("Done", 7), claudeUser(std::string(400000, 'A'))});
    EXPECT_EQ(ClaudeTranscript::parse(file.lines)->phase, running);
}

TEST(ClaudeTranscriptTest, aFileThatBeginsWithAClearFollowsAClearedOne) {
    const std::string caveat = claudeUser("Caveat", R"(,"isMeta":true)");
    EXPECT_TRUE(ClaudeTranscript::isClearSuccessor(TranscriptLines({R"({"type":"mode"})", caveat, claudeClear}).lines));
    EXPECT_FALSE(ClaudeTranscript::isClearSuccessor(TranscriptLines({claudeUser("Hi"), claudeClear}).lines));
    EXPECT_FALSE(ClaudeTranscript::isClearSuccessor(TranscriptLines({caveat, claudeClear.substr(0, 40)}).lines));
}

std::string codexEvent(const std::string& payload) {
    return R"({"type":"event_msg","payload":)" + payload + "}";
}

TEST(CodexTranscriptTest, theNewestRecordsTellTheReading) {
    const std::string started = codexEvent(R"({"type":"task_started","model_context_window":1000})");
    const std::string complete = codexEvent(R"({"type":"task_complete"})");
    const std::string prompt = codexEvent(R"({"type":"user_message","message":"Fix it"})");
    const struct {
        const char* what;
        Lines lines;
        TranscriptReading expected;
    } cases[] = {
        {"a turn that ended",
         {started, prompt, complete},
         {.contextWindow = 1000, .phase = ended, .sessionTitle = "Fix it"}},
        {"an abort",
         {prompt, complete, codexEvent(R"({"type":"turn_aborted"})")},
         {.phase = running, .sessionTitle = "Fix it"}},
        {"the newest response, not the total",
         {codexEvent(
             R"({"type":"token_count","info":{"total_token_usage":{"total_tokens":900},"last_token_usage":{"total_tokens":30}}})")},
         {.contextUsed = 30}},
        {"without a total",
         {codexEvent(R"({"info":{"last_token_usage":{"input_tokens":20,"output_tokens":3}}})")},
         {.contextUsed = 23}},
        {"a usage of nothing",
         {codexEvent(R"({"token_usage":{"total_tokens":5}})"), codexEvent(R"({"token_usage":{"total_tokens":0}})")},
         {.contextUsed = 5}},
        {"a model, in objects before arrays",
         {R"({"payload":{"a":[{"model":"no"}],"b":{"c":{"model":"yes"}}}})"},
         {.model = "yes"}},
        {"what it said meanwhile, when nobody asked",
         {codexEvent(R"({"type":"agent_message","phase":"commentary","message":"Looking around"})"),
          codexEvent(R"({"type":"user_message","message":"<command-name>/clear</command-name>"})")},
         {.phase = running, .sessionTitle = "Looking around"}},
        {"a prompt in the model's form",
         {R"({"payload":{"type":"message","role":"user","content":[{"text":"Do "},{"text":"this"}]}})",
          R"({"payload":{"type":"message","role":"user","content":[{"text":"<environment_context>"}]}})"},
         {.sessionTitle = "Do this"}},
        {"nothing", {"{", "", R"({"type":"other"})"}, {}},
    };
    for (const auto& each : cases) {
        const TranscriptLines file(each.lines);
        EXPECT_EQ(CodexTranscript::parse(file.lines).value_or(TranscriptReading()), each.expected) << each.what;
    }
}

TEST(CodexTranscriptTest, aSessionBelongsToTheFolderItWasStartedIn) {
    const std::string meta = R"({"type":"session_meta","payload":{"git":{},"cwd":"/home/me/a \"b\""}})";
    for (const auto& line : {meta, meta.substr(0, meta.size() - 2)}) {
        EXPECT_TRUE(CodexTranscript::belongsToProject(TranscriptLines({"", line}).lines, R"(/home/me/a "b"/)")) << line;
        EXPECT_FALSE(CodexTranscript::belongsToProject(TranscriptLines({line}).lines, "/home/me")) << line;
    }
    EXPECT_FALSE(CodexTranscript::belongsToProject(TranscriptLines({"{}"}).lines, ""));
}

std::string gemini(const std::string& content, const std::string& more = "") {
    return R"({"id":"g","type":"gemini","content":")" + content + "\"" + more + "}";
}

std::string geminiUser(const std::string& content) {
    return R"({"id":"u","type":"user","content":)" + content + "}";
}

std::string geminiTools(const std::string& statuses) {
    return R"(,"toolCalls":[{"status":"success"},{"status":")" + statuses + "\"}]";
}

TEST(GeminiTranscriptTest, theNewestRecordsTellTheReading) {
    const std::string used = R"(,"model":"gemini-x","tokens":{"input":12})";
    const auto usedReading = [](TranscriptReading reading) {
        reading.model = "gemini-x";
        reading.contextUsed = 12;
        reading.contextWindow = 1048576;
        return reading;
    };
    const std::string prompt = geminiUser(R"("Fix it")");
    const struct {
        const char* what;
        Lines lines;
        TranscriptReading expected;
    } cases[] = {
        {"a turn that ended", {prompt, gemini("Done", used)}, usedReading({.phase = ended, .sessionTitle = "Fix it"})},
        {"no tokens yet",
         {gemini("Done", used), gemini("More", R"(,"tokens":{"input":0})")},
         usedReading({.phase = ended})},
        {"a tool asks",
         {prompt, gemini("", geminiTools("awaiting_approval"))},
         {.phase = asking, .sessionTitle = "Fix it"}},
        {"a tool runs", {gemini("text", geminiTools("executing"))}, {.phase = running}},
        {"a tool was refused",
         {prompt, gemini("", geminiTools("cancelled"))},
         {.phase = ended, .sessionTitle = "Fix it"}},
        {"nothing said yet", {prompt, gemini("")}, {.phase = running, .sessionTitle = "Fix it"}},
        {"an error", {prompt, R"({"type":"error","content":"no"})"}, {.phase = ended, .sessionTitle = "Fix it"}},
        {"a clear behind the newest usage",
         {gemini("Done", used), geminiUser(R"(" /clear ")")},
         {.didClearContext = true, .phase = running}},
        {"a usage behind the clear", {geminiUser(R"("/clear")"), gemini("Done", used)}, usedReading({.phase = ended})},
        {"context is no prompt",
         {geminiUser(R"([{"text":"Fix"},[{"text":" it"}]])"), geminiUser(R"("<session_context> x")")},
         {.phase = running, .sessionTitle = "Fix it"}},
        {"taken back", {prompt, gemini("Done", used), R"({"$rewindTo":"u"})"}, {}},
        {"a word for it in a text", {prompt, gemini("$rewindTo")}, {.phase = ended, .sessionTitle = "Fix it"}},
        {"nothing", {"{", R"({"$set":{"type":"user"}})"}, {}},
    };
    for (const auto& each : cases) {
        const TranscriptLines file(each.lines);
        EXPECT_EQ(GeminiTranscript::parse(file.lines), Reading(each.expected)) << each.what;
    }
    EXPECT_EQ(GeminiTranscript::contextWindow(""), std::nullopt);
    EXPECT_EQ(GeminiTranscript::contextWindow("gemma-4-27b"), 256000);
    const std::string document = R"({"kind":"main","messages":[)" + prompt + "," + gemini("Done", used) + "]}";
    EXPECT_EQ(GeminiTranscript::parseLegacyDocument(document), usedReading({.phase = ended, .sessionTitle = "Fix it"}));
    EXPECT_EQ(GeminiTranscript::parseLegacyDocument(R"({"kind":"subagent","messages":[]})"), std::nullopt);
    EXPECT_EQ(GeminiTranscript::parseLegacyDocument("[]"), std::nullopt);
}

TEST(GeminiTranscriptTest, aProjectIsFoundByItsSlugItsHashAndTheRegistry) {
    using namespace GeminiTranscript;
    const struct {
        const char* path;
        const char* slug;
    } slugs[] = {{"/home/me/My Proj_2/", "my-proj-2"},
                 {"", "project"},
                 {"/", "project"},
                 {"/x/--é--", "project"},
                 {"/x/.a", "a"}};
    for (const auto& [path, slug] : slugs)
        EXPECT_EQ(projectSlug(path), slug) << path;
    EXPECT_EQ(candidateTranscriptDirectories("/p/App", "/home/me"),
              (Lines{"/home/me/.gemini/tmp/app/chats", "/home/me/.gemini/tmp/" + sha256Hex("/p/App") + "/chats"}));
    const PathResolution resolved = [](const std::string& path) { return path == "/link" ? "/real" : path; };
    const std::string registry = R"({"projects":{"/real":"app-2","/up":"../x"}})";
    EXPECT_EQ(transcriptDirectory("/link", registry, "/h", resolved), "/h/.gemini/tmp/app-2/chats");
    EXPECT_EQ(transcriptDirectory("/link", registry, "/h"), std::nullopt);
    EXPECT_EQ(registeredIdentifier("/up", registry), std::nullopt);
    EXPECT_EQ(registeredIdentifier("/real", "{"), std::nullopt);
    EXPECT_TRUE(directoryOwnsProject("/real\n", "/link", resolved));
    EXPECT_FALSE(directoryOwnsProject("", ""));
    const std::string head = R"({"sessionId":"s","projectHash":")" + sha256Hex("/real") + R"(","kind":"subagent"})";
    for (const std::string& line : {head, head.substr(0, head.size() - 1)}) {
        EXPECT_TRUE(belongsToProject(TranscriptLines({line}).lines, "/link", resolved));
        EXPECT_FALSE(belongsToProject(TranscriptLines({line}).lines, "/link"));
        EXPECT_TRUE(isSubagent(TranscriptLines({line}).lines));
    }
    EXPECT_TRUE(isSessionFile("session-1.json"));
    EXPECT_FALSE(isSessionFile("session-1.jsonl.tmp"));
}

}  // namespace
}  // namespace orvane
