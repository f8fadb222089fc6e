#include "OrvaneCore/Transcripts/TraceReport.h"

#include <algorithm>
#include <boost/json/object.hpp>
#include <ranges>
#include <string>
#include <unordered_set>
#include <utility>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane {

namespace {

using boost::json::object;

void addCallsOf(const std::vector<AgentRun>& runs, std::vector<ToolEvent>& events) {
    std::unordered_set<std::string> known;
    for (const ToolEvent& event : events)
        known.insert(event.id);
    for (const AgentRun& run : runs) {
        for (const ToolEvent& event : run.events) {
            if (!known.insert(event.id).second) continue;
            events.push_back(event);
            events.back().isSidechain = true;
        }
    }
}

void addDate(object& into, const char* key, std::optional<double> seconds) {
    if (seconds) into[key] = Date{*seconds}.iso8601();
}

template <typename Value>
void add(object& into, const char* key, const std::optional<Value>& value) {
    if (value) into[key] = *value;
}

std::string shortLine(std::string_view text) {
    return Text::truncated(Text::oneLine(text), TranscriptText::maximumDetail);
}

JsonValue encode(const ToolEvent& event) {
    object json{{"id", event.id},
                {"name", event.name},
                {"category", rawValue(event.category)},
                {"isSidechain", event.isSidechain},
                {"isAsync", event.isAsync}};
    add(json, "target", event.target);
    addDate(json, "timestamp", event.timestamp);
    add(json, "succeeded", event.succeeded);
    add(json, "durationSeconds", event.durationSeconds);
    add(json, "error", event.error);
    return json;
}

JsonValue encode(const FileTouch& file) {
    object json{{"path", file.path}, {"edits", file.edits}};
    addDate(json, "firstAt", file.firstAt);
    addDate(json, "lastAt", file.lastAt);
    return json;
}

JsonValue encode(const AgentRun& run) {
    object json{{"id", run.id},
                {"isAsync", run.isAsync},
                {"tools", run.events.size()},
                {"failures", std::ranges::count(run.events, std::optional(false), &ToolEvent::succeeded)}};
    add(json, "toolUseID", run.toolUseID);
    add(json, "agentType", run.agentType.transform(shortLine));
    add(json, "description", run.description.transform(shortLine));
    addDate(json, "startedAt", run.startedAt);
    add(json, "durationSeconds", run.durationSeconds);
    add(json, "succeeded", run.succeeded);
    return json;
}

JsonValue encode(const TraceSummary& summary) {
    object categories;
    for (const auto& [category, count] : summary.countsByCategory)
        categories[rawValue(category)] = count;
    JsonArray tools;
    for (const TraceSummary::ToolCount& tool : summary.topTools)
        tools.push_back({{"name", tool.name}, {"count", tool.count}});
    return {{"countsByCategory", std::move(categories)},
            {"total", summary.total},
            {"distinctFiles", summary.distinctFiles},
            {"subagents", summary.subagents},
            {"sidechainEvents", summary.sidechainEvents},
            {"failures", summary.failures},
            {"running", summary.running},
            {"topTools", std::move(tools)}};
}

template <typename Range>
JsonArray encodedAll(Range&& entries) {
    JsonArray array;
    for (const auto& entry : entries)
        array.push_back(encode(entry));
    return array;
}

template <typename Entry>
JsonArray first(const std::vector<Entry>& entries) {
    return encodedAll(entries | std::views::take(TraceReport::longestList));
}

JsonArray newest(const std::vector<ToolEvent>& events) {
    return encodedAll(
        events |
        std::views::drop(std::ssize(events) - std::min(std::ssize(events), std::ptrdiff_t{TraceReport::longestList})));
}

}  // namespace

TraceReport TraceReport::of(std::vector<ToolEvent> events, std::vector<AgentRun> runs,
                            std::optional<std::string_view> projectPath) {
    addCallsOf(runs, events);
    TraceReport report{.summary = ToolTrace::summarize(events, topCount),
                       .files = ToolTrace::filesTouched(events, projectPath),
                       .failures = {},
                       .sensitive = ToolTrace::sensitiveTouches(events),
                       .subagents = std::move(runs)};
    std::ranges::copy_if(events, std::back_inserter(report.failures),
                         [](const ToolEvent& event) { return event.succeeded == false; });
    return report;
}

JsonValue TraceReport::encode() const {
    return {{"summary", orvane::encode(summary)},
            {"files", first(files)},
            {"failures", newest(failures)},
            {"sensitive", newest(sensitive)},
            {"subagents", first(subagents)},
            {"counts",
             {{"files", files.size()},
              {"failures", failures.size()},
              {"sensitive", sensitive.size()},
              {"subagents", subagents.size()}}}};
}

}  // namespace orvane
