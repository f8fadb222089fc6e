#include "OrvaneCore/Workspace/RestorableSession.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

namespace {

/// A whole number from 0 to the largest that every integer type here holds.
std::optional<int> readIndex(const JSONObject& object, std::string_view key) {
    const auto number = object.optionalInteger(key);
    if (!number || *number < 0 || !std::in_range<int>(*number)) return std::nullopt;
    return static_cast<int>(*number);
}

double readFontSize(const JSONObject& object) {
    const double standard = RestorableSession().fontSize;
    const double size = object.number("fontSize", standard);
    return size > 0 ? size : standard;
}

}  // namespace

JsonValue RestorableSession::encode() const {
    boost::json::object object{{"kind", rawValue(kind)}, {"title", title}, {"fontSize", fontSize}};
    const auto put = [&](std::string_view key, const auto& value) {
        if (value) object[key] = *value;
    };
    const auto putID = [&](std::string_view key, const std::optional<Uuid>& id) {
        if (id) object[key] = id->upperText();
    };
    putID("sessionID", sessionID);
    put("command", command);
    put("tintIndex", tintIndex);
    put("visibleSlot", visibleSlot);
    putID("surfaceID", surfaceID);
    putID("customAgentID", customAgentID);
    put("workingDirectory", workingDirectory);
    return object;
}

std::optional<RestorableSession> RestorableSession::decode(const JsonValue& json) {
    const JSONObject object(json);
    const auto kind = object.raw<SessionKind>("kind");
    if (!kind) return std::nullopt;
    return RestorableSession{.sessionID = object.uuid("sessionID"),
                             .kind = *kind,
                             .title = object.string("title"),
                             .command = object.optionalString("command"),
                             .tintIndex = readIndex(object, "tintIndex"),
                             .fontSize = readFontSize(object),
                             .visibleSlot = readIndex(object, "visibleSlot"),
                             .surfaceID = object.uuid("surfaceID"),
                             .customAgentID = object.uuid("customAgentID"),
                             .workingDirectory = object.optionalString("workingDirectory")};
}

}  // namespace orvane
