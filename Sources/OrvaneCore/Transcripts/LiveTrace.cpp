#include "OrvaneCore/Transcripts/LiveTrace.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace orvane {

namespace {

constexpr int topTools = 5;

template <typename Wanted>
std::vector<ToolEvent> newest(const std::vector<ToolEvent>& events, Wanted wanted) {
    std::vector<ToolEvent> found;
    std::ranges::copy_if(events, std::back_inserter(found), wanted);
    std::ranges::reverse(found);
    return found;
}

/// What went in and out may be long, and a report is kept for as long as somebody looks at it.
std::vector<ToolEvent> withoutDetails(std::vector<ToolEvent> events) {
    for (ToolEvent& event : events) {
        event.inputDetail.reset();
        event.outputDetail.reset();
    }
    return events;
}

std::vector<FileTouch> newestFiles(const std::vector<ToolEvent>& events, std::string_view root) {
    std::vector<FileTouch> files = ToolTrace::filesTouched(events, root);
    std::ranges::reverse(files);
    std::ranges::stable_sort(files, std::greater(), [](const FileTouch& file) { return file.lastAt.value_or(0); });
    return files;
}

}  // namespace

LiveTrace LiveTrace::of(const std::vector<ToolEvent>& events, std::string_view root) {
    const auto isRunning = [](const ToolEvent& event) { return !event.succeeded; };
    const auto hasFailed = [](const ToolEvent& event) { return event.succeeded == false; };
    const auto isAny = [](const ToolEvent&) { return true; };
    return {.summary = ToolTrace::summarize(events, topTools),
            .files = newestFiles(events, root),
            .running = withoutDetails(newest(events, isRunning)),
            .failures = withoutDetails(newest(events, hasFailed)),
            .sensitive = withoutDetails(newest(ToolTrace::sensitiveTouches(events), isAny))};
}

}  // namespace orvane
