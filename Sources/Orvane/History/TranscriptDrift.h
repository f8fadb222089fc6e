#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// What agents write into their transcripts changes with their versions. This tells how far ours read them.
struct TranscriptDrift {
    static constexpr std::size_t mostFiles = 200;

    /// Transcripts that were looked at, of those that there are.
    std::size_t filesRead = 0;
    std::size_t filesFound = 0;
    /// Records that no reader knows, by their kind; "malformed" is what is no record at all.
    std::map<TranscriptProvider, std::map<std::string, std::size_t>> notUnderstood;

    bool operator==(const TranscriptDrift&) const = default;

    /// Looks at both ends of the newest transcripts below a home folder. Blocks on the disk, so it is for background
    /// threads.
    static TranscriptDrift look(const std::string& home, std::size_t fileLimit = mostFiles);
};

}  // namespace orvane
