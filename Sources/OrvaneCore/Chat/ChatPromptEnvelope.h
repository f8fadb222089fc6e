#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Json.h"

namespace orvane {

/// How files travel with a prompt: the agent reads their paths as text, and a machine-readable copy behind it gives
/// transcript and history what the person typed.
namespace ChatPromptEnvelope {

struct Attachment {
    std::string name;
    std::string path;

    bool operator==(const Attachment&) const = default;
    JsonValue encode() const;
    /// None when a member is missing.
    static std::optional<Attachment> decode(const JsonValue& value);
};

struct Payload {
    std::string message;
    std::vector<Attachment> attachments;

    bool operator==(const Payload&) const = default;
};

/// The text for the agent; the message itself when nothing is attached.
std::string wrap(std::string_view message, const std::vector<Attachment>& attachments);

/// None of a text without an envelope and of a damaged one.
std::optional<Payload> unpack(std::string_view text);

/// What the person typed.
std::string visibleRequest(std::string_view text);

}  // namespace ChatPromptEnvelope

}  // namespace orvane
