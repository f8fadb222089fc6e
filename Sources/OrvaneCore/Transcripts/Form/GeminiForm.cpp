#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/Form/GeminiContent.h"
#include "OrvaneCore/Transcripts/Form/GeminiItems.h"
#include "OrvaneCore/Transcripts/Form/ProviderForms.h"
#include "OrvaneCore/Transcripts/Form/RecordEdit.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TranscriptForm {

namespace {

namespace Schema = GeminiTranscript::Schema;
using TranscriptLine::headContains;

constexpr std::string_view cancellation = "Request cancelled.";

class GeminiWriter {
 public:
    void write(const GeminiItems::Item& item, bool isNewest) {
        if (item.copyOf) return;
        for (const std::string& unseen : item.unseenBefore)
            writeMessage(out_.store(unseen), isNewest);
        if (!item.written.empty()) {
            out_.write(item.written);
        } else if (item.id.empty()) {
            out_.keep(item.line);
        } else {
            writeMessage(item.line, isNewest);
        }
    }

    NormalizedLines lines() && {
        out_.finish();
        return std::move(out_);
    }

 private:
    void writeMessage(std::string_view line, bool isNewest) {
        const bool isCancellation = headContains(line, R"("type":"info")") && headContains(line, cancellation);
        const bool isInParts = headContains(line, R"("content":[)");
        const auto record = isCancellation || isInParts ? TranscriptLine::parsed(parser_, line) : std::nullopt;
        if (!record) {
            out_.keep(line);
        } else if (record->string(Schema::kind) == "info" && record->string(Schema::content) == cancellation) {
            out_.write(RecordEdit::object(
                *record, {{.key = Schema::kind, .json = RecordEdit::jsonString(Schema::errorMessage)}}));
        } else {
            writeSaid(line, *record, isNewest);
        }
    }

    void writeSaid(std::string_view line, const TranscriptRecord& record, bool isNewest) {
        const bool isUser = record.string(Schema::kind) == Schema::userMessage;
        const bool saysNothing = isUser && GeminiContent::text(record[Schema::content]).empty();
        if (saysNothing) {
            if (isNewest) out_.keep(line);
        } else if (auto flattened = GeminiContent::flattened(record)) {
            out_.write(std::move(*flattened));
        } else {
            out_.keep(line);
        }
    }

    TranscriptParser parser_;
    NormalizedLines out_;
};

/// The place of the newest message, or of the one before an answer that has no text yet: it tells how the turn stands.
/// As many as there are items when there is none.
std::size_t newestMessage(const std::vector<GeminiItems::Item>& items) {
    for (std::size_t place = items.size(); place-- > 0;) {
        const GeminiItems::Item& item = items[place];
        if (!item.id.empty() && !item.copyOf && !headContains(item.line, R"("content":"")")) return place;
    }
    return items.size();
}

}  // namespace

NormalizedLines geminiForm(std::span<const std::string_view> lines) {
    GeminiItems messages;
    for (const std::string_view line : lines)
        messages.take(line);
    GeminiWriter writer;
    const std::size_t newest = newestMessage(messages.items());
    for (std::size_t place = 0; place < messages.items().size(); ++place)
        writer.write(messages.items()[place], place == newest);
    return std::move(writer).lines();
}

}  // namespace orvane::TranscriptForm
