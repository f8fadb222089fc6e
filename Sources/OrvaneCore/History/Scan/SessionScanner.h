#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "OrvaneCore/History/Scan/SessionScan.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// Reads the lines of one transcript into a `SessionScan`. The lines have to last as long as it does.
class SessionScanner {
 public:
    static std::unique_ptr<SessionScanner> of(TranscriptProvider provider);
    /// What both ends of a transcript tell. The end may repeat lines of the head.
    static SessionScan scanned(TranscriptProvider provider, std::span<const std::string_view> head,
                               std::span<const std::string_view> tail);

    SessionScanner() = default;
    SessionScanner(const SessionScanner&) = delete;
    SessionScanner& operator=(const SessionScanner&) = delete;
    virtual ~SessionScanner() = default;

 protected:
    /// A line that begins with "{".
    virtual void read(std::string_view line, SessionScan::Part part) = 0;
    /// After the last line.
    virtual void finish() {}

    /// None for a line that is cut, malformed or too long. Until the next one is parsed.
    static std::optional<TranscriptRecord> parsed(std::string_view line);

    SessionScan scan_;
};

}  // namespace orvane
