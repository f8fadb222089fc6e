#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"

namespace orvane {

/// How a conversation goes on with another model: what was said before travels in front of the next request.
namespace ConversationHandoff {

/// Most characters of older messages that travel along.
inline constexpr std::size_t maxContextCharacters = 40000;

struct Message {
    /// "user" or "assistant".
    std::string role;
    std::string text;

    bool operator==(const Message&) const = default;
    JsonValue encode() const;
    static std::optional<Message> decode(const JsonValue& value);
};

struct Payload {
    std::vector<Message> messages;
    std::string currentRequest;

    bool operator==(const Payload&) const = default;
};

/// Carries the newest messages of people and assistants; the newest one whole, however long it is.
std::string wrap(const std::vector<TranscriptFeed::Entry>& entries, std::string_view currentRequest);
std::string wrap(const std::vector<Message>& messages, std::string_view currentRequest);

/// None of a text without a wrapper and of a damaged one.
std::optional<Payload> unpack(std::string_view text);

/// What the person wrote, without the wrapper and without the envelope of its attachments.
std::string visibleRequest(std::string_view text);

}  // namespace ConversationHandoff

}  // namespace orvane
