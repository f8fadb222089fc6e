#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/CodexMessage.h"
#include "OrvaneCore/Transcripts/Form/ProviderForms.h"
#include "OrvaneCore/Transcripts/Form/RecordEdit.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TranscriptForm {

namespace {

using RecordEdit::jsonString;
using TranscriptLine::headContains;

class CodexForm {
 public:
    void take(std::string_view line) {
        if (headContains(line, R"("type":"token_usage_record")")) return takeUsage(line);
        if (headContains(line, R"("type":"token_count")")) return takeCount(line);
        if (headContains(line, R"("type":"item_completed")")) return takeItem(line);
        if (headContains(line, R"("role":"user")")) return takeMessage(line);
        if (headContains(line, R"("type":"user_message")")) return takeEvent(line);
        out_.keep(line);
    }

    NormalizedLines normalized() && {
        writeUsages(unmatched_.size());
        out_.finish();
        return std::move(out_);
    }

 private:
    /// The usage of a response, told before the event that tells it too: which may never come when the turn is aborted.
    struct Usage {
        std::size_t place;
        std::string event;
    };

    void takeUsage(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        const TranscriptRecord usage = record ? (*record)["payload"]["usage"] : TranscriptRecord();
        const std::size_t place = out_.keep(line);
        if (!usage.isObject()) return;
        const std::string info = R"({"last_token_usage":)" + usage.json() + "}";
        unmatched_.push_back({.place = place,
                              .event = R"({"timestamp":)" + (*record)["timestamp"].json() +
                                       R"(,"type":"event_msg","payload":{"type":"token_count","info":)" + info + "}}"});
    }

    void takeCount(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        const TranscriptRecord info = record ? (*record)["payload"]["info"] : TranscriptRecord();
        if (!info["last_token_usage"].isObject()) {
            out_.keep(line);
            return;
        }
        // Codex tells its figures again when only the limits of the account have changed.
        const std::string total = info["total_token_usage"].json();
        const bool isRepeated = unmatched_.empty() && info.contains("total_token_usage") && total == total_;
        total_ = total;
        const std::string window = R"({"model_context_window":)" + info["model_context_window"].json() + "}";
        const std::string counted = RecordEdit::object(info, {{.key = "total_token_usage", .json = {}}});
        const std::string payload =
            RecordEdit::object((*record)["payload"], {{.key = "info", .json = isRepeated ? window : counted}});
        if (!unmatched_.empty()) {
            out_.drop(unmatched_.back().place);
            unmatched_.pop_back();
            writeUsages(unmatched_.size());
        }
        out_.write(RecordEdit::object(*record, {{.key = "payload", .json = payload}}));
    }

    void writeUsages(std::size_t count) {
        for (std::size_t index = 0; index < count; ++index)
            out_.rewrite(unmatched_[index].place, std::move(unmatched_[index].event));
        unmatched_.clear();
    }

    void takeItem(std::string_view line) {
        const bool isCompaction = headContains(line, R"("type":"ContextCompaction")");
        const bool isMessage =
            headContains(line, R"("type":"UserMessage")") || headContains(line, R"("type":"AgentMessage")");
        const auto record = isCompaction || isMessage ? TranscriptLine::parsed(parser_, line) : std::nullopt;
        if (!record) {
            out_.keep(line);
            return;
        }
        const TranscriptRecord payload = (*record)["payload"];
        const TranscriptRecord item = payload["item"];
        if (item.string("type") == "ContextCompaction") {
            out_.write(RecordEdit::object(*record, {{.key = "payload", .json = R"({"type":"context_compacted"})"}}));
        } else if (item.string("type") != "UserMessage" ||
                   !CodexMessage::isOfHarness(CodexMessage::text(item["content"]))) {
            keepAsOneText(line, *record, item, [&](const std::string& whole) {
                return RecordEdit::object(payload, {{.key = "item", .json = whole}});
            });
        }
    }

    void takeMessage(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        const TranscriptRecord message = record ? (*record)["payload"] : TranscriptRecord();
        if (message.string("type") != "message" || message.string("role") != "user") {
            out_.keep(line);
            return;
        }
        const auto parts = message.elements("content");
        std::vector<TranscriptRecord> said;
        for (std::size_t index = 0; index < parts.size(); ++index) {
            const bool isHarness = CodexMessage::notesHarness(message, index) ||
                                   CodexMessage::isOfHarness(parts[index].string("text").value_or(""));
            if (!isHarness) said.push_back(parts[index]);
        }
        if (said.empty() && !parts.empty()) return;
        if (said.size() < parts.size()) {
            out_.write(RecordEdit::object(*record, {{.key = "payload", .json = withContent(message, said)}}));
        } else {
            keepAsOneText(line, *record, message, [](const std::string& whole) { return whole; });
        }
    }

    void takeEvent(std::string_view line) {
        const auto record = TranscriptLine::parsed(parser_, line);
        if (!record || !CodexMessage::isOfHarness((*record)["payload"].string("message").value_or(""))) out_.keep(line);
    }

    /// The message with these parts of its content, their texts joined in the first that has one.
    static std::string withContent(const TranscriptRecord& message, const std::vector<TranscriptRecord>& parts) {
        std::string joined;
        for (const TranscriptRecord& part : parts)
            joined += part.string("text").value_or(std::string_view());
        std::string content;
        bool isWritten = false;
        for (const TranscriptRecord& part : parts) {
            const bool isText = part.string("text").has_value();
            if (isText && isWritten) continue;
            content += content.empty() ? "" : ",";
            content += isText ? RecordEdit::object(part, {{.key = "text", .json = jsonString(joined)}}) : part.json();
            isWritten = isWritten || isText;
        }
        return RecordEdit::object(message, {{.key = "content", .json = "[" + content + "]"}});
    }

    template <typename Payload>
    void keepAsOneText(std::string_view line, const TranscriptRecord& record, const TranscriptRecord& message,
                       const Payload& payload) {
        const auto parts = message.elements("content");
        const auto texts =
            std::ranges::count_if(parts, [](const TranscriptRecord& part) { return part.string("text").has_value(); });
        if (texts < 2) {
            out_.keep(line);
        } else {
            out_.write(RecordEdit::object(record, {{.key = "payload", .json = payload(withContent(message, parts))}}));
        }
    }

    TranscriptParser parser_;
    NormalizedLines out_;
    std::vector<Usage> unmatched_;
    std::string total_;  // of the newest count, as JSON
};

}  // namespace

NormalizedLines codexForm(std::span<const std::string_view> lines) {
    CodexForm form;
    for (const std::string_view line : lines)
        form.take(line);
    return std::move(form).normalized();
}

}  // namespace orvane::TranscriptForm
