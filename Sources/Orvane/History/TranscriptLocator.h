#pragma once

#include <optional>
#include <set>
#include <string>

#include "OrvaneCore/Transcripts/SessionTelemetry.h"

namespace orvane::TranscriptLocator {

/// The transcript that a session writes, among the files of its agent below the home folder: the one that its command
/// line names, else the one that was begun in its folder since the session started, or since it was cleared. None while
/// there is none. Files in `taken` are other sessions'. Blocks on the disk, so it is for background threads.
std::optional<std::string> find(const SessionTelemetry& telemetry, const std::string& home,
                                const std::set<std::string>& taken);

}  // namespace orvane::TranscriptLocator
