#include "OrvaneCore/Chat/ChatPromptEnvelope.h"

#include <boost/json/object.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::ChatPromptEnvelope {

namespace {

constexpr std::string_view heading =
    "The user attached the following files to this message. Use them as context when relevant:\n";
constexpr std::string_view opening = "<orvane-chat-prompt>";
constexpr std::string_view closing = "</orvane-chat-prompt>";

}  // namespace

JsonValue Attachment::encode() const {
    return boost::json::object{{"name", name}, {"path", path}};
}

std::optional<Attachment> Attachment::decode(const JsonValue& value) {
    const JSONObject object(value);
    auto name = object.optionalString("name");
    auto path = object.optionalString("path");
    if (!name || !path) return std::nullopt;
    return Attachment{.name = std::move(*name), .path = std::move(*path)};
}

std::string wrap(std::string_view message, const std::vector<Attachment>& attachments) {
    if (attachments.empty()) return std::string(message);
    std::string text(heading);
    for (const Attachment& attachment : attachments)
        text.append("- ").append(attachment.path).append("\n");
    const JsonValue payload = boost::json::object{{"attachments", encodedList(attachments)}, {"message", message}};
    return text.append("\n").append(opening).append("\n").append(Json::write(payload)).append("\n").append(closing);
}

std::optional<Payload> unpack(std::string_view text) {
    const auto inner = TranscriptText::between(text, opening, closing);
    const auto value = inner ? Json::parse(Text::trimmed(*inner)) : std::nullopt;
    if (!value) return std::nullopt;
    const JSONObject object(*value);
    auto message = object.optionalString("message");
    auto attachments = object.list("attachments", Attachment::decode);
    if (!message || attachments.size() != object.array("attachments").size() || !object.contains("attachments"))
        return std::nullopt;
    return Payload{.message = std::move(*message), .attachments = std::move(attachments)};
}

std::string visibleRequest(std::string_view text) {
    auto payload = unpack(text);
    return payload ? std::move(payload->message) : std::string(text);
}

}  // namespace orvane::ChatPromptEnvelope
