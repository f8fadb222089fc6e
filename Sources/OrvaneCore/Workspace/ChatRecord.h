#pragma once

#include <optional>
#include <string>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Json.h"

namespace orvane {

/// An earlier conversation of a chat surface.
struct ChatHistorySegment {
    std::string transcriptPath;
    /// The raw value of the agent's session kind.
    std::string provider;
    Date at;

    bool operator==(const ChatHistorySegment&) const = default;

    JsonValue encode() const;
    /// None without a path.
    static std::optional<ChatHistorySegment> decode(const JsonValue& json);
};

/// A change of the model within a chat.
struct ChatModelMark {
    Date at;
    std::optional<std::string> from;
    std::string to;

    bool operator==(const ChatModelMark&) const = default;

    JsonValue encode() const;
    /// None without a model changed to.
    static std::optional<ChatModelMark> decode(const JsonValue& json);
};

/// A line of the program's own within a chat.
struct ChatNote {
    Date at;
    std::string text;

    bool operator==(const ChatNote&) const = default;

    JsonValue encode() const;
    /// None without a text.
    static std::optional<ChatNote> decode(const JsonValue& json);
};

}  // namespace orvane
