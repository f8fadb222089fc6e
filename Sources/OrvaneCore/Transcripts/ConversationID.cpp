#include "OrvaneCore/Transcripts/ConversationID.h"

#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane {

namespace {

std::optional<std::string> unlessEmpty(std::optional<std::string_view> text) {
    return text.value_or("").empty() ? std::nullopt : std::optional<std::string>(*text);
}

std::optional<std::string> told(TranscriptProvider provider, const TranscriptRecord& record) {
    if (provider == TranscriptProvider::gemini) {
        return unlessEmpty(record.string(GeminiTranscript::Schema::sessionIdentifier));
    }
    return record.string("type") == "session_meta" ? unlessEmpty(record["payload"].string("id")) : std::nullopt;
}

}  // namespace

std::optional<std::string> conversationID(TranscriptProvider provider, const std::string& path,
                                          std::span<const std::string_view> headLines) {
    if (provider == TranscriptProvider::claude) {
        const std::string name = lastPathComponent(path);
        return unlessEmpty(std::string_view(name).substr(0, name.find('.')));
    }
    TranscriptParser parser;
    for (const std::string_view line : headLines) {
        const auto record = TranscriptLine::parsed(parser, line);
        auto id = record ? told(provider, *record) : std::nullopt;
        if (id) return id;
    }
    return std::nullopt;
}

}  // namespace orvane
