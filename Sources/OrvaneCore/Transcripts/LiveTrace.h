#pragma once

#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane {

/// What somebody wants to know who looks at an agent at work: what it changed, what failed, what it does now.
struct LiveTrace {
    TraceSummary summary;
    /// The one that was touched last first, relative to the root where they are below it.
    std::vector<FileTouch> files;
    // The newest first.
    std::vector<ToolEvent> running;
    std::vector<ToolEvent> failures;
    std::vector<ToolEvent> sensitive;

    bool operator==(const LiveTrace&) const = default;

    static LiveTrace of(const std::vector<ToolEvent>& events, std::string_view root);
};

}  // namespace orvane
