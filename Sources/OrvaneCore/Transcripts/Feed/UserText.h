#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/TranscriptFeed.h"

namespace orvane::TranscriptFeed {

/// How a transcript writes a slash command that was typed.
enum class CommandForm {
    tag,    ///< "<command-name>/compact</command-name>"
    slash,  ///< "/compress"
};

/// What a person said in a text that an agent recorded as the user's, without what Orvane and the agent wrapped around
/// it.
namespace UserText {

struct Message {
    Role role = Role::user;
    std::string text;
    std::vector<ChatPromptEnvelope::Attachment> attachments;
    /// Said to another model, before the conversation was handed over.
    bool isHandedOver = false;
};

/// None for what the agent itself wrote as the user.
std::vector<Message> messages(std::string_view text, CommandForm form);

}  // namespace UserText

}  // namespace orvane::TranscriptFeed
