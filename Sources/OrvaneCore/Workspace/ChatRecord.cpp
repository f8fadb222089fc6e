#include "OrvaneCore/Workspace/ChatRecord.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

JsonValue ChatHistorySegment::encode() const {
    return boost::json::object{{"transcriptPath", transcriptPath}, {"provider", provider}, {"at", at.iso8601()}};
}

std::optional<ChatHistorySegment> ChatHistorySegment::decode(const JsonValue& json) {
    const JSONObject object(json);
    std::string path = object.string("transcriptPath");
    if (path.empty()) return std::nullopt;
    return ChatHistorySegment{.transcriptPath = std::move(path),
                              .provider = object.string("provider"),
                              .at = object.date("at").value_or(Date())};
}

JsonValue ChatModelMark::encode() const {
    boost::json::object object{{"at", at.iso8601()}, {"to", to}};
    if (from) object["from"] = *from;
    return object;
}

std::optional<ChatModelMark> ChatModelMark::decode(const JsonValue& json) {
    const JSONObject object(json);
    std::optional<std::string> to = object.optionalString("to");
    if (!to) return std::nullopt;
    return ChatModelMark{
        .at = object.date("at").value_or(Date()), .from = object.optionalString("from"), .to = *std::move(to)};
}

JsonValue ChatNote::encode() const {
    return boost::json::object{{"at", at.iso8601()}, {"text", text}};
}

std::optional<ChatNote> ChatNote::decode(const JsonValue& json) {
    const JSONObject object(json);
    std::optional<std::string> text = object.optionalString("text");
    if (!text) return std::nullopt;
    return ChatNote{.at = object.date("at").value_or(Date()), .text = *std::move(text)};
}

}  // namespace orvane
