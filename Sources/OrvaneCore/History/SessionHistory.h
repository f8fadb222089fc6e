#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// The conversations that agents keep on disk, and how one is taken up again.
namespace SessionHistory {

using Provider = TranscriptProvider;

/// The shell command that goes on with the conversation; none for a blank id. The id is one word of it, whatever it
/// holds.
std::optional<std::string> resumeCommand(Provider provider, std::string_view id);

/// The id that a command line resumes: the word behind "--resume" or behind the bare word "resume"; none when there is
/// no such word or it is an option.
std::optional<std::string> resumeIdentifier(std::string_view inCommand);

}  // namespace SessionHistory

}  // namespace orvane
