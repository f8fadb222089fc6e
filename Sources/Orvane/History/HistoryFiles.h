#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/History/SessionRecord.h"
#include "OrvaneCore/Support/Date.h"

namespace orvane {

class TranscriptEnds;

/// The transcripts of all agents below a home folder. Blocks on the disk, so it is for background threads. What cannot
/// be read is left out.
namespace HistoryFiles {

struct File {
    std::string path;
    TranscriptProvider provider = TranscriptProvider::claude;
    Date modifiedAt;
    std::int64_t byteSize = 0;
    /// The project's path as the name of its folder tells it, or empty.
    std::string pathHint;
    /// A file whose first line is the project's path, or empty.
    std::string markerPath;
};

/// Without opening one of them.
std::vector<File> list(const std::string& home);

/// What a file tells when it is read now; `file` takes the time and the size that it has then.
struct Reading {
    File file;
    /// None when it is no conversation.
    std::optional<SessionRecord> record;
};
/// None when the file cannot be read, or changes meanwhile in another way than growing.
std::optional<Reading> read(const File& file, TranscriptEnds& ends);

}  // namespace HistoryFiles

}  // namespace orvane
