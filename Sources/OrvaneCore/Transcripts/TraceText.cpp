#include "OrvaneCore/Transcripts/TraceText.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/SpanText.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"
#include "OrvaneCore/Transcripts/Thread/PlainText.h"

namespace orvane::TraceText {

namespace {

using Counts = std::vector<std::pair<std::string, int>>;

class Writer {
 public:
    explicit Writer(const L10n& l10n) : l10n_(l10n) {}

    void write(const TraceSummary& summary) {
        std::string line = l10n_.plural("trace.calls", summary.total);
        const std::pair<const char*, int> facts[] = {{"trace.failed", summary.failures},
                                                     {"trace.running", summary.running},
                                                     {"trace.bySubagents", summary.sidechainEvents}};
        for (const auto& [key, count] : facts) {
            if (count > 0) line += ", " + l10n_.text(key, count);
        }
        text_ += line + "\n";
        Counts categories;
        for (const auto& [category, count] : summary.countsByCategory)
            categories.emplace_back(l10n_.text("trace.category." + std::string(rawValue(category)) + ".name"), count);
        list("trace.kinds", categories);
        Counts tools;
        for (const TraceSummary::ToolCount& tool : summary.topTools)
            tools.emplace_back(Text::oneLine(tool.name), tool.count);
        list("trace.topTools", tools);
    }

    void write(const std::vector<FileTouch>& files) {
        section("trace.files", files.size());
        for (std::size_t index = 0; index < shown(files.size()); ++index) {
            const FileTouch& file = files[index];
            const std::string edits = file.edits > 0 ? l10n_.plural("trace.edits", file.edits) : std::string();
            line(PlainText::call(file.path, {}, edits));
        }
        more(files.size());
    }

    /// The newest last, as in the conversation.
    void write(const char* key, const std::vector<ToolEvent>& events) {
        section(key, events.size());
        more(events.size());
        for (std::size_t index = events.size() - shown(events.size()); index < events.size(); ++index) {
            const ToolEvent& event = events[index];
            line(PlainText::call(event.name, event.target.value_or(""), outcome(event)));
        }
    }

    void write(const std::vector<AgentRun>& runs) {
        section("trace.subagents", runs.size());
        for (std::size_t index = 0; index < shown(runs.size()); ++index)
            line(PlainText::call(runs[index].agentType.value_or(runs[index].id),
                                 Text::truncated(runs[index].description.value_or(""), TranscriptText::maximumDetail),
                                 state(runs[index])));
        more(runs.size());
    }

    void add(std::string_view line) { text_.append(line).append("\n"); }
    std::string result() && { return std::move(text_); }

 private:
    static std::size_t shown(std::size_t count) { return std::min(count, TraceReport::longestList); }

    void section(const char* key, std::size_t count) {
        if (count > 0) text_ += "\n" + l10n_.text(key, count) + "\n";
    }

    void line(const std::string& text) { text_ += "  " + text + "\n"; }

    void more(std::size_t count) {
        if (count > TraceReport::longestList) line(l10n_.text("trace.more", count - TraceReport::longestList));
    }

    void list(const char* key, const Counts& counts) {
        std::string all;
        for (const auto& [name, count] : counts)
            all += (all.empty() ? "" : ", ") + name + " " + std::to_string(count);
        if (!all.empty()) text_ += l10n_.text(key, all) + "\n";
    }

    std::string outcome(const ToolEvent& event) const {
        if (event.succeeded != false) return {};
        return event.error ? l10n_.text("thread.failedBecause", *event.error) : l10n_.text("thread.failed");
    }

    std::string state(const AgentRun& run) const {
        const char* key = run.succeeded ? (*run.succeeded ? "trace.state.done" : "thread.failed") : "trace.state.open";
        std::string text = l10n_.text(key) + ", " + l10n_.plural("trace.calls", std::ssize(run.events));
        if (run.durationSeconds) text += ", " + spanText(l10n_, Seconds(*run.durationSeconds));
        return text;
    }

    const L10n& l10n_;
    std::string text_;
};

}  // namespace

std::string text(std::string_view title, const TraceReport& report, const L10n& l10n) {
    Writer writer(l10n);
    writer.add(Text::oneLine(title));
    writer.write(report.summary);
    writer.write(report.files);
    writer.write("trace.failures", report.failures);
    writer.write("trace.sensitive", report.sensitive);
    writer.write(report.subagents);
    return std::move(writer).result();
}

}  // namespace orvane::TraceText
