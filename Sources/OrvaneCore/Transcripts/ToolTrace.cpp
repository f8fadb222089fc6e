#include "OrvaneCore/Transcripts/ToolTrace.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>
#include <variant>

#include "OrvaneCore/Transcripts/Trace/ClaudeTrace.h"
#include "OrvaneCore/Transcripts/Trace/CodexTrace.h"
#include "OrvaneCore/Transcripts/Trace/GeminiTrace.h"
#include "OrvaneCore/Transcripts/Trace/TraceBuilder.h"

namespace orvane::ToolTrace {

namespace {

bool isFileEvent(const ToolEvent& event) {
    const bool isOnFile = event.category == ToolCategory::read || event.category == ToolCategory::edit ||
                          event.category == ToolCategory::write;
    return isOnFile && event.target && !event.target->ends_with("…");
}

void touch(FileTouch& file, const ToolEvent& event) {
    if (event.category != ToolCategory::read) ++file.edits;
    if (!event.timestamp) return;
    file.firstAt = std::min(file.firstAt.value_or(*event.timestamp), *event.timestamp);
    file.lastAt = std::max(file.lastAt.value_or(*event.timestamp), *event.timestamp);
}

std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> all;
    const bool isAbsolute = path.starts_with('/');
    while (!path.empty()) {
        const std::string_view part = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        if (part.empty() || part == ".") continue;
        const bool canGoUp = !all.empty() && all.back() != "..";
        if (part == ".." && canGoUp) {
            all.pop_back();
        } else if (part != ".." || !isAbsolute) {
            all.push_back(part);
        }
    }
    return all;
}

std::string joinedParts(std::span<const std::string_view> parts) {
    std::string path;
    for (const std::string_view part : parts)
        path.append(path.empty() ? "" : "/").append(part);
    return path;
}

std::vector<TraceSummary::ToolCount> topTools(const std::vector<ToolEvent>& events, int topCount) {
    std::map<std::string, int> counts;
    for (const ToolEvent& event : events)
        ++counts[event.name];
    std::vector<TraceSummary::ToolCount> tools;
    tools.reserve(counts.size());
    for (const auto& [name, count] : counts)
        tools.push_back({.name = name, .count = count});
    std::ranges::stable_sort(tools, std::ranges::greater(), &TraceSummary::ToolCount::count);
    tools.resize(std::min(tools.size(), static_cast<std::size_t>(std::max(topCount, 0))));
    return tools;
}

}  // namespace

struct Reader::State {
    explicit State(Provider provider) {
        if (provider == Provider::codex) trace.emplace<CodexTrace>();
        if (provider == Provider::gemini) trace.emplace<GeminiTrace>();
    }

    TraceBuilder builder;
    std::variant<ClaudeTrace, CodexTrace, GeminiTrace> trace;
};

Reader::Reader(Provider provider) : state_(std::make_unique<State>(provider)) {}

Reader::~Reader() = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(Reader&&) noexcept = default;

void Reader::take(std::string_view line) {
    if (!line.starts_with('{')) return;
    std::visit([&](auto& trace) { trace.take(line, state_->builder); }, state_->trace);
}

std::vector<ToolEvent> Reader::finish() && {
    return state_->builder.events();
}

std::vector<ToolEvent> events(std::span<const std::string_view> lines, Provider provider) {
    Reader reader(provider);
    for (const std::string_view line : lines)
        reader.take(line);
    return std::move(reader).finish();
}

std::vector<FileTouch> filesTouched(const std::vector<ToolEvent>& events, std::optional<std::string_view> relativeTo) {
    std::vector<FileTouch> files;
    std::unordered_map<std::string, std::size_t> index;
    for (const ToolEvent& event : events) {
        if (!isFileEvent(event)) continue;
        const std::string path = normalize(*event.target, relativeTo);
        const auto [place, isNew] = index.try_emplace(path, files.size());
        if (isNew) files.push_back({.path = path});
        touch(files[place->second], event);
    }
    return files;
}

std::string normalize(std::string_view path, std::optional<std::string_view> relativeTo) {
    const std::vector<std::string_view> parts = components(path);
    const bool isAbsolute = path.starts_with('/');
    if (isAbsolute && relativeTo && relativeTo->starts_with('/')) {
        const std::vector<std::string_view> root = components(*relativeTo);
        const auto below = std::ranges::mismatch(root, parts);
        if (below.in1 == root.end()) {
            const std::string rest = joinedParts({below.in2, parts.end()});
            return rest.empty() ? "." : rest;
        }
    }
    const std::string joined = (isAbsolute ? "/" : "") + joinedParts(parts);
    return joined.empty() ? "." : joined;
}

TraceSummary summarize(const std::vector<ToolEvent>& events, int topCount) {
    TraceSummary summary;
    for (const ToolEvent& event : events) {
        ++summary.countsByCategory[event.category];
        ++summary.total;
        if (event.category == ToolCategory::task) ++summary.subagents;
        if (event.isSidechain) ++summary.sidechainEvents;
        if (!event.succeeded) ++summary.running;
        if (event.succeeded == false) ++summary.failures;
    }
    summary.distinctFiles = static_cast<int>(filesTouched(events, std::nullopt).size());
    summary.topTools = topTools(events, topCount);
    return summary;
}

}  // namespace orvane::ToolTrace
