#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane::SessionHistory {

/// Lines that a live scan looks at before it gives up.
inline constexpr int titleProbeLimit = 200;

/// What names a session while its transcript grows. Kept between runs.
struct TitleScan {
    /// What the agent itself calls the conversation.
    std::optional<std::string> summary;
    std::optional<std::string> firstPrompt;
    std::optional<std::string> sidechainPrompt;
    int probes = 0;

    bool operator==(const TitleScan&) const = default;

    std::optional<std::string> resolved() const;

    JsonValue encode() const;
    static TitleScan decode(const JsonValue& json);
};

/// Takes over what the next line of the transcript tells.
void absorbTitle(std::string_view line, TranscriptProvider provider, TitleScan& into);

}  // namespace orvane::SessionHistory
