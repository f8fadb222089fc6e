#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// The messages in a Codex transcript. A prompt stands there as an event (`user_message`), as the item that the person
/// saw (`UserMessage`) and as what the model got (`message` of role `user`); which of them depends on the version.
namespace CodexMessage {

/// The texts of a message's content, joined; the content may be a text itself.
std::string text(const TranscriptRecord& content);

/// Whether it is what Codex tells the model in the person's name: where it runs, the rules of the project, an
/// interruption.
bool isOfHarness(std::string_view text);

/// What the person wrote, from a line of any of the three kinds; empty for any other.
std::string ofUser(const TranscriptRecord& line);

/// What Codex said, likewise (`agent_message`, `AgentMessage`, `message` of role `assistant`).
std::string ofAgent(const TranscriptRecord& line);

/// Whether Codex itself notes that it is the author of that element of a message's content.
bool notesHarness(const TranscriptRecord& message, std::size_t element);

}  // namespace CodexMessage

}  // namespace orvane
