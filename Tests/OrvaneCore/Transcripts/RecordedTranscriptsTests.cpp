#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "OrvaneCore/Transcripts/CodexMessage.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "OrvaneCore/Transcripts/TranscriptReader.h"
#include "Support/Table.h"
#include "TranscriptLines.h"

namespace orvane {
namespace {

/// What a reader that trusts the form counts.
struct Counts {
    int prompts = 0;
    int answers = 0;
    std::int64_t tokens = 0;
    bool operator==(const Counts&) const = default;
};

void countClaude(const TranscriptRecord& record, Counts& counts) {
    const TranscriptRecord message = record["message"];
    for (const char* key : {"input_tokens", "output_tokens", "cache_creation_input_tokens", "cache_read_input_tokens"})
        counts.tokens += message["usage"].integer(key).value_or(0);
    if (record.isTrue("isMeta") || record.contains("toolUseResult")) return;
    const auto blocks = message.elements("content");
    std::string text(message.string("content").value_or(""));
    for (const TranscriptRecord& block : blocks)
        text += block.string("text").value_or("");
    if (text.empty() || text.starts_with("<command-name>") || message.string("model") == "<synthetic>") return;
    counts.prompts += record.string("type") == "user" ? 1 : 0;
    counts.answers += record.string("type") == "assistant" ? 1 : 0;
}

void countCodex(const TranscriptRecord& record, Counts& counts) {
    const TranscriptRecord payload = record["payload"];
    const auto type = payload.string("type");
    if (type == "message") counts.prompts += CodexMessage::ofUser(record).empty() ? 0 : 1;
    if (type == "item_completed") counts.answers += CodexMessage::ofAgent(record).empty() ? 0 : 1;
    if (type == "token_count") {
        counts.tokens += payload["info"]["last_token_usage"].integer("total_tokens").value_or(0);
        EXPECT_FALSE(payload["info"].contains("total_token_usage"));
    }
    EXPECT_NE(record.string("type"), "token_usage_record");
}

void countGemini(const TranscriptRecord& record, Counts& counts) {
    const auto type = record.string("type");
    counts.tokens += record["tokens"].integer("total").value_or(0);
    const bool hasText = !record.string("content").value_or("").empty();
    counts.prompts += type == "user" && hasText ? 1 : 0;
    counts.answers += type == "gemini" && hasText ? 1 : 0;
}

Counts counted(TranscriptProvider provider, std::span<const std::string_view> lines) {
    TranscriptParser parser;
    Counts counts;
    for (const std::string_view line : lines) {
        const auto record = parser.parse(line);
        if (!record) continue;
        if (provider == TranscriptProvider::claude) countClaude(*record, counts);
        if (provider == TranscriptProvider::codex) countCodex(*record, counts);
        if (provider == TranscriptProvider::gemini) countGemini(*record, counts);
    }
    return counts;
}

class RecordedTranscripts : public testing::Test {
 public:
    static std::vector<std::array<std::string, 11>> facts() {
        std::ostringstream text;
        for (const std::string& line : recordedTranscript("facts.txt"))
            text << line << "\n";
        return table<11>(text.str());
    }
    static TranscriptProvider provider(const std::string& name) {
        return *fromRawValue<TranscriptProvider>(name.substr(0, name.find('-')));
    }
};

std::string shown(const std::optional<std::string>& value) {
    return value.value_or("-");
}

std::string shown(std::optional<std::int64_t> value) {
    return value ? std::to_string(*value) : "-";
}

std::string shown(std::optional<AgentPhase> phase) {
    if (!phase) return "none";
    return *phase == AgentPhase::turnEnded ? "ended" : "running";
}

TEST_F(RecordedTranscripts, readAsAPersonReadsThem) {
    ASSERT_EQ(facts().size(), 11U);
    for (const auto& [name, prompts, answers, tools, failed, model, context, window, tokens, title, end] : facts()) {
        SCOPED_TRACE(name);
        const TranscriptLines file(recordedTranscript(name + ".jsonl"));
        const NormalizedLines lines = TranscriptForm::normalized(provider(name), file.lines);
        const TranscriptReading told = TranscriptReader::read(provider(name), file.lines).value_or(TranscriptReading());
        EXPECT_EQ(shown(told.model), model);
        EXPECT_EQ(shown(told.contextUsed), context);
        EXPECT_EQ(shown(told.contextWindow), window);
        EXPECT_EQ(shown(told.sessionTitle), title);
        EXPECT_EQ(shown(told.phase), end);
        EXPECT_FALSE(told.didClearContext);
        EXPECT_EQ(told.pendingToolName, std::nullopt);
        const Counts counts = counted(provider(name), lines);
        EXPECT_EQ(std::to_string(counts.prompts), prompts);
        EXPECT_EQ(std::to_string(counts.answers), answers);
        EXPECT_EQ(std::to_string(counts.tokens), tokens);
        EXPECT_TRUE(TranscriptForm::notUnderstood(provider(name), file.lines).empty());
        const TraceSummary trace = ToolTrace::summarize(ToolTrace::events(file.lines, provider(name)), 0);
        EXPECT_EQ(std::to_string(trace.total), tools);
        EXPECT_EQ(std::to_string(trace.failures), failed);
        EXPECT_EQ(trace.running, 0);
        const auto feed = TranscriptFeed::entries(lines, provider(name), 1000);
        using enum TranscriptFeed::Role;
        const auto shownAs = [&](TranscriptFeed::Role role) {
            return std::to_string(std::ranges::count_if(
                feed, [&](const TranscriptFeed::Entry& entry) { return entry.role == role && !entry.tool; }));
        };
        EXPECT_EQ(shownAs(user), prompts);
        EXPECT_EQ(shownAs(assistant), answers);
        EXPECT_EQ(std::to_string(std::ranges::count_if(
                      feed, [](const TranscriptFeed::Entry& entry) { return entry.tool.has_value(); })),
                  tools);
    }
}

TEST_F(RecordedTranscripts, whatIsInFormStaysAsItIs) {
    for (const auto& fact : facts()) {
        const TranscriptLines file(recordedTranscript(fact[0] + ".jsonl"));
        const NormalizedLines once = TranscriptForm::normalized(provider(fact[0]), file.lines);
        const NormalizedLines twice = TranscriptForm::normalized(provider(fact[0]), once);
        EXPECT_TRUE(std::ranges::equal(once.lines(), twice.lines())) << fact[0];
    }
}

/// At every moment of a session: the phase that is right after so many lines of its file.
TEST_F(RecordedTranscripts, thePhaseIsRightAtEveryMoment) {
    const auto phaseAfter = [](const char* name, std::size_t count) {
        auto all = recordedTranscript(std::string(name) + ".jsonl");
        all.resize(count);
        const TranscriptLines file(std::move(all));
        const auto told = TranscriptReader::read(provider(name), file.lines);
        return told ? told->phase : std::nullopt;
    };
    const auto running = AgentPhase::running;
    const auto ended = AgentPhase::turnEnded;
    const struct {
        const char* name;
        std::size_t count;  ///< of lines that are written by then
        std::optional<AgentPhase> phase;
    } moments[] = {
        {"claude-interactive-perm", 5, {}},        // nothing was asked yet
        {"claude-interactive-perm", 6, running},   // a prompt
        {"claude-interactive-perm", 19, running},  // a text, its tool is still to be written
        {"claude-interactive-perm", 20, running},  // the tool
        {"claude-interactive-perm", 26, running},  // its result
        {"claude-interactive-perm", 33, ended},    // the answer
        {"claude-interactive-perm", 58, ended},    // a refused edit
        {"claude-interactive-main", 26, ended},    // interrupted
        {"claude-interactive-main", 28, running},  // the next prompt
        {"claude-stream-errors", 17, ended},       // an error of the server
        {"codex-exec-bashfail", 1, {}},
        {"codex-exec-bashfail", 2, running},
        {"codex-exec-bashfail", 18, running},
        {"codex-exec-bashfail", 19, ended},
        {"gemini-interactive-main", 2, {}},       // the session's context alone
        {"gemini-interactive-main", 3, running},  // a prompt
        {"gemini-interactive-main", 5, ended},    // cancelled
        {"gemini-print-tool-yolo", 8, running},   // a tool has answered
        {"gemini-print-tool-yolo", 10, ended},
        {"gemini-interactive-perm", 28, running},  // a tool is asked for, its dialog open
        {"gemini-interactive-perm", 31, ended},    // refused
        {"gemini-interactive-perm", 54, running},
    };
    for (const auto& [name, count, phase] : moments)
        EXPECT_EQ(shown(phaseAfter(name, count)), shown(phase)) << name << " after " << count;
}

}  // namespace
}  // namespace orvane
