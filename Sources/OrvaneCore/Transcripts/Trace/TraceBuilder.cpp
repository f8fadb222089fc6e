#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::ToolTrace {

namespace {

constexpr std::size_t maximumExcerpt = 2000;

}  // namespace

ToolEvent& TraceBuilder::call(std::string_view id, std::string_view name) {
    const std::string key = id.empty() ? "#" + std::to_string(events_.size()) : std::string(id);
    const auto [place, isNew] = index_.try_emplace(key, events_.size());
    if (!isNew) return events_[place->second];
    ToolEvent& event = events_.emplace_back();
    event.id = key;
    event.name = name;
    event.category = category(name);
    return event;
}

ToolEvent* TraceBuilder::find(std::string_view id) {
    const auto found = index_.find(std::string(id));
    return found == index_.end() ? nullptr : &events_[found->second];
}

void setTarget(ToolEvent& event, const std::optional<std::string>& target) {
    if (target) event.target = Text::truncated(*target, TranscriptText::maximumDetail);
}

std::optional<std::string> excerpt(std::string_view text) {
    const std::string_view trimmed = Text::trimmed(text);
    return trimmed.empty() ? std::nullopt : std::optional(Text::truncated(trimmed, maximumExcerpt));
}

void end(ToolEvent& event, const Ending& ending) {
    event.succeeded = ending.succeeded;
    event.outputDetail = excerpt(ending.output);
    event.error.reset();
    std::string reason = TranscriptText::detail(ending.output);
    if (!ending.succeeded && !reason.empty()) event.error = std::move(reason);
    if (event.timestamp && ending.at && *ending.at >= *event.timestamp)
        event.durationSeconds = *ending.at - *event.timestamp;
}

std::optional<double> secondsOf(const TranscriptRecord& record) {
    // With its fraction, which most calls are shorter than a second without.
    const std::string_view text = record.string("timestamp").value_or("");
    const auto exact = Date::parseIso8601(text);
    const auto date = exact ? exact : TranscriptText::timestamp(text);
    return date ? std::optional(date->secondsSince1970) : std::nullopt;
}

}  // namespace orvane::ToolTrace
