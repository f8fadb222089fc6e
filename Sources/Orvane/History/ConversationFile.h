#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/ToolTrace.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"
#include "Platform/SystemError.h"

namespace orvane {

/// A whole transcript on disk, read when somebody wants to see it. Blocks on the disk, so it is for background threads.
/// The file is read, not mapped: one that shrinks under a map ends the process. Of one that is being written the lines
/// count that are whole.
namespace ConversationFile {

/// So much of a file is held at once; a line that is longer, the dump of a picture, keeps its ends.
inline constexpr std::size_t blockBytes = std::size_t{16} << 20;

using Lines = std::span<const std::string_view>;

/// The lines in the order of the file, blocks of them at a time; false from `take` ends it.
std::expected<void, SystemError> readLines(const std::string& path, std::size_t blockSize,
                                           const std::function<bool(Lines)>& take);

/// The last `limit` entries.
std::expected<std::vector<TranscriptFeed::Entry>, SystemError> entries(const std::string& path,
                                                                       TranscriptProvider provider, int limit,
                                                                       const std::stop_token& stop = {});

/// All tool calls.
std::expected<std::vector<ToolEvent>, SystemError> toolEvents(const std::string& path, TranscriptProvider provider);

}  // namespace ConversationFile

}  // namespace orvane
