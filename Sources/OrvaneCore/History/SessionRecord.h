#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// One past conversation with an agent, as its transcript tells it.
struct SessionRecord {
    /// The agent's own id of it, by which it is resumed.
    std::string id;
    TranscriptProvider provider = TranscriptProvider::claude;
    /// Where the agent worked; empty when nothing tells.
    std::string projectPath;
    /// One line of at most 72 characters.
    std::string title;
    Date firstPromptAt;
    Date lastActivityAt;
    /// Of user and assistant, in the part of the transcript that was read.
    std::int64_t messageCount = 0;
    std::int64_t approximateTokens = 0;
    /// The transcript, absolute.
    std::string filePath;
    /// The prompts on one line of at most 280 characters.
    std::string preview;

    bool operator==(const SessionRecord&) const = default;

    std::string projectName() const;

    JsonValue encode() const;
    /// None without an id, a provider or a file.
    static std::optional<SessionRecord> decode(const JsonValue& json);
};

}  // namespace orvane
