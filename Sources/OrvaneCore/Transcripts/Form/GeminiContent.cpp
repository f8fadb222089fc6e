#include "OrvaneCore/Transcripts/Form/GeminiContent.h"

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Form/RecordEdit.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"

namespace orvane::TranscriptForm::GeminiContent {

namespace {

namespace Schema = GeminiTranscript::Schema;

bool isOfCli(std::string_view text) {
    const std::string_view part = Text::trimmed(text);
    return part.starts_with("<session_context>") || part.starts_with("<hook_context>") ||
           (part.starts_with('<') && part.ends_with('>'));
}

std::string calls(const TranscriptRecord& content) {
    std::string all;
    for (const TranscriptRecord& part : content.elements()) {
        const TranscriptRecord call = part["functionCall"];
        if (!call.isObject()) continue;
        all += all.empty() ? "" : ",";
        all += call.json();
    }
    return "[" + all + "]";
}

}  // namespace

std::string text(const TranscriptRecord& content) {
    if (const auto whole = content.string()) return std::string(*whole);
    std::string joined;
    for (const TranscriptRecord& part : content.elements()) {
        const auto said = part.isString() ? part.string() : part.string("text");
        if (said && !part.isTrue("thought") && !isOfCli(*said)) joined += *said;
    }
    return joined;
}

std::string likeness(const TranscriptRecord& record) {
    std::string said = text(record[Schema::content]);
    for (const TranscriptRecord& call : record.elements(Schema::toolCalls))
        said += "\n" + std::string(call.string(Schema::identifier).value_or(""));
    for (const TranscriptRecord& part : record.elements(Schema::content)) {
        if (const auto id = part["functionCall"].string(Schema::identifier)) said += "\n" + std::string(*id);
    }
    return said.empty() ? said : std::string(record.string(Schema::kind).value_or("")) + "\n" + said;
}

std::optional<std::string> flattened(const TranscriptRecord& record) {
    const TranscriptRecord content = record[Schema::content];
    if (!content.isArray()) return std::nullopt;
    const std::string said = RecordEdit::jsonString(text(content));
    const std::string called = calls(content);
    if (called == "[]" || record.contains(Schema::toolCalls)) {
        return RecordEdit::object(record, {{.key = Schema::content, .json = said}});
    }
    return RecordEdit::object(record,
                              {{.key = Schema::content, .json = said}, {.key = Schema::toolCalls, .json = called}});
}

}  // namespace orvane::TranscriptForm::GeminiContent
