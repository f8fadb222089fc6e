#include "OrvaneCore/Chat/ConversationHandoff.h"

#include <algorithm>
#include <boost/json/object.hpp>
#include <ranges>
#include <utility>

#include "OrvaneCore/Chat/ChatPromptEnvelope.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::ConversationHandoff {

namespace {

constexpr std::string_view preamble =
    "You are taking over an existing Orvane conversation from another model. Continue from the existing workspace "
    "state and use the prior conversation as context. Do not mention this handoff unless it is relevant to the "
    "answer.\n";
constexpr std::string_view opening = "<orvane-conversation-handoff>";
constexpr std::string_view closing = "</orvane-conversation-handoff>";

bool isSpoken(const TranscriptFeed::Entry& entry) {
    return entry.role == TranscriptFeed::Role::user || entry.role == TranscriptFeed::Role::assistant;
}

}  // namespace

JsonValue Message::encode() const {
    return boost::json::object{{"role", role}, {"text", text}};
}

std::optional<Message> Message::decode(const JsonValue& value) {
    const JSONObject object(value);
    auto role = object.optionalString("role");
    auto text = object.optionalString("text");
    if (!role || !text) return std::nullopt;
    return Message{.role = std::move(*role), .text = std::move(*text)};
}

std::string wrap(const std::vector<TranscriptFeed::Entry>& entries, std::string_view currentRequest) {
    std::vector<Message> messages;
    std::size_t characters = 0;
    for (const TranscriptFeed::Entry& entry : std::views::reverse(entries)) {
        if (!isSpoken(entry)) continue;
        characters += Text::characterCount(entry.text);
        if (!messages.empty() && characters > maxContextCharacters) break;
        messages.push_back({.role = std::string(rawValue(entry.role)), .text = entry.text});
    }
    std::ranges::reverse(messages);
    return wrap(messages, currentRequest);
}

std::string wrap(const std::vector<Message>& messages, std::string_view currentRequest) {
    const JsonValue payload =
        boost::json::object{{"currentRequest", currentRequest}, {"messages", encodedList(messages)}};
    return std::string(preamble).append(opening).append("\n").append(Json::write(payload)).append("\n").append(closing);
}

std::optional<Payload> unpack(std::string_view text) {
    const auto inner = TranscriptText::between(text, opening, closing);
    const auto value = inner ? Json::parse(Text::trimmed(*inner)) : std::nullopt;
    if (!value) return std::nullopt;
    const JSONObject object(*value);
    auto request = object.optionalString("currentRequest");
    auto messages = object.list("messages", Message::decode);
    if (!request || messages.size() != object.array("messages").size() || !object.contains("messages"))
        return std::nullopt;
    return Payload{.messages = std::move(messages), .currentRequest = std::move(*request)};
}

std::string visibleRequest(std::string_view text) {
    const auto payload = unpack(text);
    return ChatPromptEnvelope::visibleRequest(payload ? std::string_view(payload->currentRequest) : text);
}

}  // namespace orvane::ConversationHandoff
