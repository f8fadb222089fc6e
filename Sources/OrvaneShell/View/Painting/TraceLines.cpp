#include "OrvaneShell/View/Painting/TraceLines.h"

#include <algorithm>
#include <string_view>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"

namespace orvane::TraceLines {

namespace {

/// Of a list that is not the last one; its heading tells how many there are.
constexpr std::size_t mostListed = 5;

class Rows {
 public:
    Rows(const L10n& l10n, int cols) : l10n_(l10n), cols_(cols) {}

    void text(const std::string& text, const Attribute& look) {
        for (std::string& line : wrapped(text, cols_))
            lines.push_back({.text = std::move(line), .look = look});
    }

    void heading(std::string_view key, std::size_t count) {
        lines.push_back({});
        lines.push_back({.text = l10n_.text(key) + " (" + std::to_string(count) + ")", .look = ViewLook::bold});
    }

    void calls(std::string_view key, std::string_view mark, const std::vector<ToolEvent>& events,
               const Attribute& look) {
        if (events.empty()) return;
        heading(key, events.size());
        for (std::size_t i = 0; i < std::min(events.size(), mostListed); ++i) {
            const ToolEvent& event = events[i];
            std::string line = std::string(mark) + " " + Text::oneLine(event.name);
            if (event.target) line += " " + Text::oneLine(*event.target);
            lines.push_back({.text = std::move(line), .look = look});
            if (event.error && !event.error->empty())
                lines.push_back({.text = "  " + Text::oneLine(*event.error), .look = ViewLook::dim});
        }
    }

    std::vector<StyledLine> lines;

 private:
    const L10n& l10n_;
    int cols_;
};

std::string totals(const TraceSummary& summary, const L10n& l10n) {
    std::string text = l10n.plural("view.trace.calls", summary.total);
    if (summary.failures > 0) text += " · " + l10n.plural("view.thread.failed", summary.failures);
    if (summary.running > 0) text += " · " + l10n.plural("view.trace.running", summary.running);
    if (summary.subagents > 0) text += " · " + l10n.plural("view.trace.subagents", summary.subagents);
    return text;
}

std::string categories(const TraceSummary& summary, const L10n& l10n) {
    std::string text;
    for (const auto& [category, count] : summary.countsByCategory) {
        text += text.empty() ? "" : "  ";
        text +=
            l10n.text("view.trace.category." + std::string(rawValue(category)) + "Calls") + " " + std::to_string(count);
    }
    return text;
}

/// The end of a path tells more than its beginning.
std::string endOf(const std::string& path, int cols) {
    std::string shown = Text::oneLine(path);
    if (static_cast<int>(Text::displayWidth(shown)) <= cols) return shown;
    while (!shown.empty() && static_cast<int>(Text::displayWidth(shown)) >= cols)
        shown.erase(0, Text::prefix(shown, 1).size());
    return "…" + shown;
}

void addFiles(Rows& rows, const LiveTrace& report, const L10n& l10n, int cols) {
    if (report.files.empty()) return;
    rows.heading("view.trace.files", report.files.size());
    for (const FileTouch& file : report.files) {
        const std::string edits = file.edits == 0 ? std::string() : l10n.plural("view.trace.edits", file.edits);
        const int room = cols - 3 - static_cast<int>(Text::displayWidth(edits));
        rows.lines.push_back({.text = std::string(file.edits == 0 ? "· " : "± ") + endOf(file.path, std::max(1, room)),
                              .look = file.edits == 0 ? ViewLook::dim : ViewLook::plain,
                              .detail = edits});
    }
}

}  // namespace

std::vector<StyledLine> of(const LiveTrace& report, const L10n& l10n, int cols) {
    Rows rows(l10n, cols);
    rows.text(totals(report.summary, l10n), ViewLook::plain);
    rows.text(categories(report.summary, l10n), ViewLook::dim);
    rows.calls("view.trace.nowRunning", "▶", report.running, ViewLook::colored(ViewLook::blue));
    rows.calls("view.trace.failures", "✗", report.failures, ViewLook::colored(ViewLook::red));
    rows.calls("view.trace.sensitive", "!", report.sensitive, ViewLook::colored(ViewLook::yellow));
    addFiles(rows, report, l10n, cols);
    return std::move(rows.lines);
}

}  // namespace orvane::TraceLines
