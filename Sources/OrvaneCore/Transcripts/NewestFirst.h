#pragma once

#include <optional>
#include <ranges>
#include <span>
#include <string_view>
#include <utility>

#include "OrvaneCore/Transcripts/TranscriptReading.h"

namespace orvane {

/// Gives a scan the lines from the newest on, until it misses nothing; none when it has learned nothing.
template <typename Scan>
std::optional<TranscriptReading> readNewestFirst(Scan scan, std::span<const std::string_view> lines) {
    for (const std::string_view line : std::views::reverse(lines)) {
        scan.take(line);
        if (scan.isComplete()) break;
    }
    TranscriptReading reading = std::move(scan).reading();
    return reading == TranscriptReading() ? std::nullopt : std::optional(std::move(reading));
}

}  // namespace orvane
