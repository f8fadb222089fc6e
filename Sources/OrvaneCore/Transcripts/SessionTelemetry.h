#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// What ties a session to the transcript that its agent writes.
struct SessionTelemetry {
    /// For so long after "/clear" another transcript is looked for.
    static constexpr Seconds successorPatience{60};

    TranscriptProvider kind = TranscriptProvider::claude;
    std::string projectPath;
    Date startedAt;
    /// The conversation: at first what its command line names, then what the transcript tells.
    std::optional<std::string> resumeID;
    /// The path of the transcript.
    std::optional<std::string> boundURL;
    std::optional<Date> lastModified;
    std::uint64_t lastSize = 0;
    /// The transcript of the conversation that was cleared, and when it was last written to.
    std::optional<std::string> abandonedURL;
    std::optional<Date> abandonedMtime;
    std::optional<Date> successorScanUntil;
    bool expectsSuccessor = false;

    bool operator==(const SessionTelemetry&) const = default;

    /// The conversation begins anew, which agents mostly write into another file.
    void noteClear(Date now) {
        expectsSuccessor = true;
        successorScanUntil = now + successorPatience;
        abandonedURL = boundURL;
        abandonedMtime = lastModified;
    }

    /// Files that were begun before belong to somebody else.
    Date beginning() const {
        return expectsSuccessor && successorScanUntil ? *successorScanUntil - successorPatience : startedAt;
    }

    bool isSearching(Date now) const {
        if (!boundURL) return true;
        return expectsSuccessor && successorScanUntil && now <= *successorScanUntil;
    }

    void bind(std::string path) {
        boundURL = std::move(path);
        lastModified.reset();
        lastSize = 0;
        expectsSuccessor = false;
        successorScanUntil.reset();
    }
};

}  // namespace orvane
