#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane::ToolTrace {

/// How a call ended.
struct Ending {
    bool succeeded = true;
    /// Seconds since 1970.
    std::optional<double> at;
    std::string_view output;
};

/// Collects events and joins calls with their results. What it gives holds until the next call.
class TraceBuilder {
 public:
    /// A new event, or the one with this id: agents repeat records when they resume a conversation.
    ToolEvent& call(std::string_view id, std::string_view name);
    ToolEvent* find(std::string_view id);

    std::vector<ToolEvent> events() { return std::move(events_); }

 private:
    std::vector<ToolEvent> events_;
    std::unordered_map<std::string, std::size_t> index_;
};

void setTarget(ToolEvent& event, const std::optional<std::string>& target);
/// The beginning of a text, for the details of an event; none for a blank one.
std::optional<std::string> excerpt(std::string_view text);
void end(ToolEvent& event, const Ending& ending);

/// Seconds since 1970 of a record's `timestamp`.
std::optional<double> secondsOf(const TranscriptRecord& record);

}  // namespace orvane::ToolTrace
