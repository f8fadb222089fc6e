#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"
#include "TranscriptLines.h"

namespace orvane {
namespace {

using Lines = std::vector<std::string>;

Lines normalized(TranscriptProvider provider, const Lines& lines) {
    const TranscriptLines file(lines);
    const NormalizedLines form = TranscriptForm::normalized(provider, file.lines);
    return {form.lines().begin(), form.lines().end()};
}

struct Case {
    const char* what;
    Lines lines;
    Lines expected;
};

void check(TranscriptProvider provider, std::initializer_list<Case> cases) {
    for (const Case& each : cases)
        EXPECT_EQ(normalized(provider, each.lines), each.expected) << each.what;
}

TEST(TranscriptFormTest, claude) {
    const std::string interrupted =
        R"({"type":"user","timestamp":"t","message":{"content":[{"type":"text","text":"[Request interrupted by user]"}]}})";
    const std::string ended =
        R"({"type":"assistant","timestamp":"t","sessionId":null,"message":{"role":"assistant","content":[{"type":"text","text":""}]}})";
    const std::string quoting = R"({"type":"user","message":{"content":"Why \"[Request interrupted by user]\"?"}})";
    const auto part = [](const std::string& message) {
        return R"({"message":{"role":"assistant","id":"m")" + message + R"(},"type":"assistant"})";
    };
    check(
        TranscriptProvider::claude,
        {{"an interruption ends the turn", {interrupted, quoting, ""}, {ended, quoting}},
         {"a subagent's does not",
          {R"({"isSidechain":true,)" + interrupted.substr(1)},
          {R"({"isSidechain":true,)" + interrupted.substr(1)}},
         {"usage counts once",
          {part(R"(,"usage":{"input_tokens":1})"), part(R"(,"content":[],"usage":{"input_tokens":2})")},
          {part(""), part(R"(,"content":[],"usage":{"input_tokens":2})")}},
         {"a command",
          {R"({"type":"system","subtype":"local_command","content":"<command-name>/clear</command-name>","uuid":"u"})"},
          {R"({"type":"user","uuid":"u","message":{"role":"user","content":"<command-name>/clear</command-name>"}})"}},
         {"cut lines stay",
          {R"({"type":"user","message":"[Request interrupted by user)"},
          {R"({"type":"user","message":"[Request interrupted by user)"}}});
}

TEST(TranscriptFormTest, codex) {
    const auto event = [](const std::string& payload) { return R"({"type":"event_msg","payload":)" + payload + "}"; };
    const auto count = [&](const std::string& info) { return event(R"({"type":"token_count","info":)" + info + "}"); };
    const auto usage = [](int tokens) {
        return R"({"timestamp":"t","type":"token_usage_record","payload":{"usage":{"total_tokens":)" +
               std::to_string(tokens) + "}}}";
    };
    const std::string untold =
        R"({"timestamp":"t","type":"event_msg","payload":{"type":"token_count","info":{"last_token_usage":{"total_tokens":)";
    const std::string told = count(R"({"last_token_usage":{"total_tokens":3},"total_token_usage":{"total_tokens":9}})");
    const std::string harness =
        R"({"type":"response_item","payload":{"type":"message","role":"user","content":[{"type":"input_text","text":"<environment_context>"}]}})";
    const auto item = [&](const std::string& content) {
        return event(R"({"type":"item_completed","item":{"type":"AgentMessage","content":[)" + content + "]}}");
    };
    check(
        TranscriptProvider::codex,
        {{"one response", {usage(3), told}, {count(R"({"last_token_usage":{"total_tokens":3}})")}},
         {"told again",
          {told, told},
          {count(R"({"last_token_usage":{"total_tokens":3}})"), count(R"({"model_context_window":null})")}},
         {"aborted before it was told",
          {usage(2), usage(3), told, usage(4)},
          {untold + "2}}}}", count(R"({"last_token_usage":{"total_tokens":3}})"), untold + "4}}}}"}},
         {"limits alone", {count("null")}, {count("null")}},
         {"the harness", {harness, event(R"({"type":"user_message","message":"# AGENTS.md instructions for x"})")}, {}},
         {"texts of a message",
          {item(R"({"type":"Text","text":"a"},{"type":"Image"},{"type":"Text","text":"b"})")},
          {item(R"({"type":"Text","text":"ab"},{"type":"Image"})")}},
         {"a compaction",
          {event(R"({"type":"item_completed","item":{"type":"ContextCompaction","id":"1"}})")},
          {event(R"({"type":"context_compacted"})")}}});
}

TEST(TranscriptFormTest, gemini) {
    const auto user = [](const std::string& id, const std::string& content, const std::string& time = "1") {
        return R"({"id":")" + id + R"(","timestamp":")" + time + R"(","type":"user","content":)" + content + "}";
    };
    const auto says = [](const std::string& id, const std::string& content, const std::string& time = "2") {
        return R"({"id":")" + id + R"(","timestamp":")" + time + R"(","type":"gemini","content":)" + content + "}";
    };
    const auto update = [](const std::string& messages) { return R"({"$set":{"messages":[)" + messages + "]}}"; };
    const std::string nothing = R"({"$set":{}})";
    const std::string answered = user("r", R"([{"functionResponse":{"id":"c"}}])");
    const std::string cancelled = R"({"id":"i","type":"info","content":"Request cancelled."})";
    check(TranscriptProvider::gemini,
          {{"the last of one id in the first one's place",
            {says("a", "\"x\""), user("b", "\"y\""), says("a", "\"z\"")},
            {says("a", "\"z\""), user("b", "\"y\"")}},
           {"content is a text",
            {user("a", R"([{"text":"<session_context>…"},{"text":"Fix "},{"text":"it"}])")},
            {user("a", "\"Fix it\"")}},
           {"a result counts while it is the newest",
            {answered, says("b", "\"x\""), user("s", R"([{"functionResponse":{"id":"c"}}])")},
            {says("b", "\"x\""), user("s", R"([{"functionResponse":{"id":"c"}}])")}},
           {"a cancellation is an error", {cancelled}, {R"({"id":"i","type":"error","content":"Request cancelled."})"}},
           {"a second writing under new ids",
            {user("a", "\"x\""), says("b", "\"y\""), user("c", "[{\"text\":\"x\"}]", "9"),
             says("d", "[{\"text\":\"y\"}]", "9"),
             update(user("c", "[{\"text\":\"x\"}]", "9") + "," + says("d", "[{\"text\":\"y\"}]", "9"))},
            {user("a", "\"x\""), says("b", "\"y\""), nothing}},
           {"the same said twice",
            {user("a", "\"x\""), cancelled, user("b", "\"x\"", "5"), update(user("b", "\"x\"", "5"))},
            {user("a", "\"x\""), R"({"id":"i","type":"error","content":"Request cancelled."})", user("b", "\"x\"", "5"),
             nothing}},
           {"what only the update holds comes before what it names",
            {says("b", "\"y\""),
             update(user("s", "\"<session_context>\"") + "," + user("a", "\"x\"") + "," + says("b", "\"y\""))},
            {user("a", "\"x\""), says("b", "\"y\""), nothing}},
           {"taken back and said again",
            {says("a", "\"x\""), R"({"$rewindTo":"a"})", says("a", "\"y\"")},
            {says("a", "\"x\""), R"({"$rewindTo":"a"})", says("a", "\"y\"")}}});
}

TEST(TranscriptFormTest, recordsThatNoReaderKnowsAreCounted) {
    const TranscriptLines codex({R"({"type":"event_msg","payload":{"type":"dream"}})",
                                 R"({"type":"event_msg","payload":{"type":"dream"}})", "{cut", " ",
                                 R"({"type":"session_meta"})"});
    EXPECT_EQ(TranscriptForm::notUnderstood(TranscriptProvider::codex, codex.lines),
              (std::map<std::string, std::size_t>{{"event_msg/dream", 2}, {"malformed", 1}}));
    const TranscriptLines gemini({R"({"$undo":1})", R"({"type":"poem"})", R"({"sessionId":"s"})", "{}"});
    EXPECT_EQ(TranscriptForm::notUnderstood(TranscriptProvider::gemini, gemini.lines),
              (std::map<std::string, std::size_t>{{"$undo", 1}, {"poem", 1}, {"{}", 1}}));
}

}  // namespace
}  // namespace orvane
