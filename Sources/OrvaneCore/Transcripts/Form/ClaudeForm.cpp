#include <algorithm>
#include <optional>
#include <ranges>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/Form/ProviderForms.h"
#include "OrvaneCore/Transcripts/Form/RecordEdit.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TranscriptForm {

namespace {

using RecordEdit::jsonString;
using TranscriptLine::headContains;

constexpr std::string_view interruption = "[Request interrupted by user";
constexpr std::string_view commandOpening = "<command-name>";
/// Only a result of a tool says that the agent goes on, and one without content is not shown.
constexpr std::string_view goesOn = R"({"type":"user","toolUseResult":true,"message":{"role":"user","content":[]}})";

bool hasBlock(const TranscriptRecord& content, std::string_view type) {
    return std::ranges::any_of(content.elements(),
                               [&](const TranscriptRecord& block) { return block.string("type") == type; });
}

bool isInterruption(const TranscriptRecord& content) {
    const auto begins = [](const TranscriptRecord& text) {
        return text.string().value_or("").starts_with(interruption);
    };
    return begins(content) || std::ranges::any_of(content.elements(), [&](const TranscriptRecord& block) {
               return block.string("type") == "text" && begins(block["text"]);
           });
}

/// The answer without text that an interruption becomes.
std::string turnEnd(const TranscriptRecord& record) {
    const std::string content = R"({"role":"assistant","content":[{"type":"text","text":""}]})";
    return R"({"type":"assistant","timestamp":)" + record["timestamp"].json() + R"(,"sessionId":)" +
           record["sessionId"].json() + R"(,"message":)" + content + "}";
}

class ClaudeForm {
 public:
    explicit ClaudeForm(std::span<const std::string_view> lines) : lines_(lines) {}

    NormalizedLines normalized() {
        findUsages();
        const auto newest = textBeforeTool();
        for (std::size_t index = 0; index < lines_.size(); ++index) {
            take(index);
            if (index == newest) out_.keep(goesOn);
        }
        out_.finish();
        return std::move(out_);
    }

 private:
    /// The id of the answer that the line is a part of, if it tells a usage.
    static std::optional<std::string_view> answer(std::string_view line) {
        if (!headContains(line, R"("role":"assistant")") || line.size() > TranscriptLine::longestParsed) return {};
        return TranscriptLine::contains(line, R"("usage":)") ? TranscriptLine::scannedWord(line, "id") : std::nullopt;
    }

    void findUsages() {
        for (std::size_t index = 0; index < lines_.size(); ++index) {
            if (const auto id = answer(lines_[index])) usage_[*id] = index;
        }
    }

    /// The newest record of the conversation, when it is the text before a tool that is yet to be written.
    std::optional<std::size_t> textBeforeTool() {
        for (std::size_t index = lines_.size(); index-- > 0;) {
            const std::string_view line = lines_[index];
            if (!TranscriptLine::contains(line, R"("type":"assistant")") &&
                !TranscriptLine::contains(line, R"("type":"user")")) {
                continue;
            }
            if (line.size() > TranscriptLine::longestParsed) return std::nullopt;
            const auto record = TranscriptLine::parsed(parser_, line);
            const auto type = record ? record->string("type") : std::nullopt;
            if ((type != "assistant" && type != "user") || record->isTrue("isSidechain")) continue;
            const TranscriptRecord message = (*record)["message"];
            const bool isText = hasBlock(message["content"], "text") && !hasBlock(message["content"], "tool_use");
            return isText && message.string("stop_reason") == "tool_use" ? std::optional(index) : std::nullopt;
        }
        return std::nullopt;
    }

    void take(std::size_t index) {
        const std::string_view line = lines_[index];
        if (const auto id = answer(line); id && usage_[*id] != index) return takeWithoutUsage(line, *id);
        if (headContains(line, interruption)) return takeInterruption(line);
        if (headContains(line, R"("subtype":"local_command")")) return takeCommand(line);
        out_.keep(line);
    }

    void takeWithoutUsage(std::string_view line, std::string_view id) {
        const auto record = TranscriptLine::parsed(parser_, line);
        if (!record || (*record)["message"].string("id") != id) {
            out_.keep(line);
            return;
        }
        const std::string message = RecordEdit::object((*record)["message"], {{.key = "usage", .json = {}}});
        out_.write(RecordEdit::object(*record, {{.key = "message", .json = message}}));
    }

    void takeInterruption(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        const TranscriptRecord content = record ? (*record)["message"]["content"] : TranscriptRecord();
        const bool ends =
            record && record->string("type") == "user" && !record->isTrue("isSidechain") && isInterruption(content);
        if (!ends || hasBlock(content, "tool_result")) out_.keep(line);
        if (ends) out_.write(turnEnd(*record));
    }

    void takeCommand(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        const auto content = record ? record->string("content") : std::nullopt;
        if (!content || !content->starts_with(commandOpening) || record->string("type") != "system") {
            out_.keep(line);
            return;
        }
        out_.write(RecordEdit::object(
            *record, {{.key = "type", .json = jsonString("user")},
                      {.key = "subtype", .json = {}},
                      {.key = "content", .json = {}},
                      {.key = "message", .json = R"({"role":"user","content":)" + jsonString(*content) + "}"}}));
    }

    std::span<const std::string_view> lines_;
    TranscriptParser parser_;
    NormalizedLines out_;
    std::unordered_map<std::string_view, std::size_t> usage_;  // of an answer: the line that keeps it
};

}  // namespace

NormalizedLines claudeForm(std::span<const std::string_view> lines) {
    return ClaudeForm(lines).normalized();
}

}  // namespace orvane::TranscriptForm
