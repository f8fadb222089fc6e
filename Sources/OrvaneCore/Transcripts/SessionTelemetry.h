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
    /// Its command line goes on with a conversation without naming it.
    bool mayContinueOlder = false;
    /// When it was last given something to do. Agents begin their files then.
    std::optional<Date> promptedAt;
    /// The path of the transcript.
    std::optional<std::string> boundURL;
    std::optional<Date> lastModified;
    std::uint64_t lastSize = 0;
    /// The transcript of the conversation that was cleared, and when it was last written to.
    std::optional<std::string> abandonedURL;
    std::optional<Date> abandonedMtime;
    std::optional<Date> clearedAt;
    std::optional<Date> successorScanUntil;
    bool expectsSuccessor = false;

    bool operator==(const SessionTelemetry&) const = default;

    /// The conversation begins anew, which agents mostly write into another file.
    void noteClear(Date now) {
        expectsSuccessor = true;
        clearedAt = now;
        successorScanUntil = now + successorPatience;
        abandonedURL = boundURL;
        abandonedMtime = lastModified;
    }

    /// Files that were begun before belong to somebody else.
    Date beginning() const { return expectsSuccessor && clearedAt ? *clearedAt : startedAt; }

    /// It was given something to do; the successor of a cleared conversation may come with that only.
    void notePrompt(Date now) {
        promptedAt = now;
        if (expectsSuccessor) successorScanUntil = now + successorPatience;
    }

    /// A session that nobody has given anything to do has no transcript yet, and others in its folder are not its.
    bool isSearching(Date now) const {
        if (!boundURL) return resumeID || mayContinueOlder || promptedAt;
        return expectsSuccessor && successorScanUntil && now <= *successorScanUntil;
    }

    void bind(std::string path) {
        boundURL = std::move(path);
        lastModified.reset();
        lastSize = 0;
        expectsSuccessor = false;
        clearedAt.reset();
        successorScanUntil.reset();
    }
};

}  // namespace orvane
