#include "OrvaneShell/View/Painting/ConversationRows.h"

#include <algorithm>
#include <string>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Painting/ViewLook.h"

namespace orvane::ConversationRows {

namespace {

constexpr int agentCols = 6;
constexpr int gap = 2;
constexpr int mostProjectCols = 18;
constexpr int mostWhenCols = 14;
/// Of the list, below which the project and the number of messages have no room.
constexpr int colsForProject = 60;
constexpr int colsForCount = 44;

/// What stands right of the titles; 0 for a column that is not there.
struct Widths {
    int project = 0;
    int when = 0;
    int count = 0;
};

int widthOf(const std::string& text) {
    return static_cast<int>(Text::displayWidth(text));
}

std::string projectOf(const HistoryCorpus::Row& row) {
    return Text::oneLine(row.record.projectName());
}

Widths widthsFor(std::span<const HistoryCorpus::Row> rows, int cols) {
    Widths widths;
    for (const HistoryCorpus::Row& row : rows) {
        widths.when = std::max(widths.when, std::min(widthOf(row.whenLabel), mostWhenCols));
        if (cols >= colsForCount)
            widths.count = std::max(widths.count, widthOf(std::to_string(row.record.messageCount)));
        if (cols >= colsForProject)
            widths.project = std::max(widths.project, std::min(widthOf(projectOf(row)), mostProjectCols));
    }
    return widths;
}

Attribute lookOf(TranscriptProvider provider) {
    switch (provider) {
        case TranscriptProvider::claude:
            return ViewLook::colored(ViewLook::yellow);
        case TranscriptProvider::codex:
            return ViewLook::colored(ViewLook::cyan);
        case TranscriptProvider::gemini:
            return ViewLook::colored(ViewLook::blue);
    }
    return {};
}

}  // namespace

void paint(CanvasPen& pen, const CellRect& area, std::span<const HistoryCorpus::Row> rows, std::size_t chosen) {
    const Widths widths = widthsFor(rows, area.cols);
    int y = area.y;
    for (std::size_t i = 0; i < rows.size(); ++i, ++y) {
        const SessionRecord& record = rows[i].record;
        const auto look = [&](Attribute base) { return i == chosen ? ViewLook::onBar(base) : base; };
        pen.fill({area.x, y, area.cols, 1}, look(ViewLook::plain));
        int right = area.right() - 1;
        const auto put = [&](const std::string& text, int width, bool isNumber) {
            if (width == 0) return;
            const int blank = isNumber ? width - widthOf(text) : 0;
            pen.text(right - width + blank, y, text, look(ViewLook::dim), width);
            right -= width + gap;
        };
        put(std::to_string(record.messageCount), widths.count, true);
        put(rows[i].whenLabel, widths.when, true);
        put(projectOf(rows[i]), widths.project, false);
        pen.text(area.x + 1, y, rawValue(record.provider), look(lookOf(record.provider)), agentCols);
        const int start = area.x + 1 + agentCols + gap;
        pen.text(start, y, Text::oneLine(record.title), look(ViewLook::plain), std::max(0, right - start));
    }
}

}  // namespace orvane::ConversationRows
