#include "OrvaneShell/View/TracePanel.h"

#include <algorithm>
#include <expected>
#include <utility>

#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/History/ConversationFile.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/TraceLines.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr int leastCols = 30;
constexpr int mostCols = 44;
constexpr Duration readInterval = 1s;
/// So many times what the last reading took, at least.
constexpr int readPause = 4;

const TranscriptWatch* transcriptOf(const SessionController& session) {
    return session.agent() == nullptr ? nullptr : session.agent()->transcript();
}

}  // namespace

struct TracePanel::Read {
    std::expected<LiveTrace, SystemError> report;
    Duration took{};
};

CellRect TracePanel::area(const CellRect& body) {
    if (body.cols <= leastCols) return body;
    const int cols = std::clamp(body.cols / 2, leastCols, mostCols);
    return {body.right() - cols, body.y, cols, body.rows};
}

void TracePanel::follow(const ViewContext& view, const SessionController& session) {
    const TranscriptWatch* transcript = transcriptOf(session);
    if (transcript == nullptr || !transcript->path()) return;
    Seen now{.path = *transcript->path(), .revision = transcript->revision()};
    if (isReading_ || seen_ == now) return;
    MainLoop& loop = view.store.loop();
    if (const Duration wait = nextReadAt_ - loop.now(); wait > Duration::zero()) {
        // The frame that it asks for looks again.
        if (!timer_)
            timer_ = loop.after(wait, [this, &view] {
                timer_.reset();
                view.actions.requestFrame();
            });
        return;
    }
    if (!seen_ || seen_->path != now.path) {
        report_.reset();
        linesCols_ = first_ = 0;
    }
    seen_ = std::move(now);
    read(view, session);
}

void TracePanel::read(const ViewContext& view, const SessionController& session) {
    const auto provider = transcriptProvider(session.identity().kind);
    if (!provider) return;
    isReading_ = true;
    runInBackground(
        view.store.pool(), view.store.loop(),
        [path = seen_->path, provider = *provider, root = session.identity().projectPath] {
            const auto start = std::chrono::steady_clock::now();
            Read read;
            const auto events = ConversationFile::toolEvents(path, provider);
            if (events) {
                read.report = LiveTrace::of(*events, root);
            } else {
                read.report = std::unexpected(events.error());
            }
            read.took = std::chrono::steady_clock::now() - start;
            return read;
        },
        // The view is there as long as its panels are.
        [weak = std::weak_ptr(self_), &view](Read read) {
            if (const auto self = weak.lock()) (*self)->take(view, std::move(read));
        });
}

void TracePanel::take(const ViewContext& view, Read read) {
    isReading_ = false;
    nextReadAt_ = view.store.loop().now() + std::max(readInterval, readPause * read.took);
    error_ = read.report ? std::string() : read.report.error().message();
    // What was known stays when the file is gone for a moment.
    if (read.report) report_ = std::move(*read.report);
    linesCols_ = 0;
    view.actions.requestFrame();
}

void TracePanel::makeLines(const ViewContext& view, int cols) {
    linesCols_ = cols;
    lines_.clear();
    if (report_) lines_ = TraceLines::of(*report_, view.l10n, cols);
    if (error_.empty()) return;
    for (std::string& line : wrapped(view.l10n.text("view.preview.unreadable", error_), cols))
        lines_.push_back({.text = std::move(line), .look = ViewLook::dim});
}

void TracePanel::paint(const ViewContext& view, Canvas& canvas, const CellRect& area,
                       const SessionController& session) {
    follow(view, session);
    CanvasPen pen(canvas, area);
    pen.fill(area, ViewLook::plain);
    pen.fill({area.x, area.y, 1, area.rows}, ViewLook::dim, U'│');
    const CellRect inside{area.x + 2, area.y, std::max(0, area.cols - 3), area.rows};
    const std::string key = "[" + view.keysOf("trace") + "]";
    const auto keyCols = static_cast<int>(Text::displayWidth(key));
    pen.text(inside.x, inside.y, view.l10n.text("view.trace.title"), ViewLook::bold, inside.cols - keyCols - 1);
    pen.text(inside.right() - keyCols, inside.y, key, ViewLook::dim);
    const CellRect body{inside.x, inside.y + 1, inside.cols, std::max(0, inside.rows - 1)};
    if (!seen_) {
        int y = body.y;
        for (const std::string& line : wrapped(view.l10n.text("view.trace.noTranscript"), body.cols))
            pen.text(body.x, y++, line, ViewLook::dim, body.cols);
        return;
    }
    if (linesCols_ != body.cols) makeLines(view, body.cols);
    const auto count = static_cast<int>(lines_.size());
    first_ = std::clamp(first_, 0, std::max(0, count - body.rows));
    for (int row = 0; row < body.rows && first_ + row < count; ++row) {
        const StyledLine& line = lines_[static_cast<std::size_t>(first_) + static_cast<std::size_t>(row)];
        const auto width = static_cast<int>(Text::displayWidth(line.detail));
        const int y = body.y + row;
        pen.text(body.x, y, line.text, line.look, std::max(0, body.cols - (width > 0 ? width + 1 : 0)));
        pen.text(body.right() - width, y, line.detail, ViewLook::dim);
    }
}

}  // namespace orvane
