#include "OrvaneCore/History/SessionRecord.h"

#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Paths.h"

namespace orvane {

std::string SessionRecord::projectName() const {
    return lastPathComponent(projectPath);
}

JsonValue SessionRecord::encode() const {
    return {{"id", id},
            {"provider", rawValue(provider)},
            {"projectPath", projectPath},
            {"title", title},
            // As numbers: modification times are finer than milliseconds, and what is read back has to be equal.
            {"firstPromptAt", firstPromptAt.secondsSince1970},
            {"lastActivityAt", lastActivityAt.secondsSince1970},
            {"messageCount", messageCount},
            {"approximateTokens", approximateTokens},
            {"filePath", filePath},
            {"preview", preview}};
}

std::optional<SessionRecord> SessionRecord::decode(const JsonValue& json) {
    const JSONObject object(json);
    const auto provider = object.raw<TranscriptProvider>("provider");
    SessionRecord record{.id = object.string("id"),
                         .provider = provider.value_or(TranscriptProvider::claude),
                         .projectPath = object.string("projectPath"),
                         .title = object.string("title"),
                         .firstPromptAt = object.date("firstPromptAt").value_or(Date()),
                         .lastActivityAt = object.date("lastActivityAt").value_or(Date()),
                         .messageCount = object.integer("messageCount"),
                         .approximateTokens = object.integer("approximateTokens"),
                         .filePath = object.string("filePath"),
                         .preview = object.string("preview")};
    if (!provider || record.id.empty() || record.filePath.empty()) return std::nullopt;
    return record;
}

}  // namespace orvane
