#include "OrvaneShell/View/Overlays/ConversationPreview.h"

#include <algorithm>

#include "Orvane/History/ConversationFile.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/WhenLabeler.h"
#include "OrvaneShell/Host/ConversationResume.h"
#include "OrvaneShell/View/Painting/ThreadLines.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int shownEntries = 40;
/// Transcripts that are not read again when somebody comes back to them.
constexpr std::size_t keptReads = 24;
constexpr std::size_t titleRows = 2;

/// "2 Jan – 14:05"; one of them when they are the same.
std::string timesOf(const ViewContext& view, const SessionRecord& record) {
    const WhenLabeler labeler(view.l10n.language, Calendar(view.history.timeZone()), view.now());
    const std::string first = labeler.label(record.firstPromptAt);
    const std::string last = labeler.label(record.lastActivityAt);
    return first == last ? last : first + " – " + last;
}

}  // namespace

void ConversationPreview::show(const ViewContext& view, const SessionRecord& record) {
    if (record_ == record) return;
    const bool isSame = record_ && record_->filePath == record.filePath;
    record_ = record;
    if (!isSame) above_ = 0;
    if (known() != nullptr) return;
    if (isReading_) {
        reading_.request_stop();
    } else {
        read(view);
    }
}

const ConversationPreview::Read* ConversationPreview::known() const {
    if (!record_) return nullptr;
    const auto found = std::ranges::find_if(reads_, [&](const Read& each) {
        return each.path == record_->filePath && each.lastActivityAt == record_->lastActivityAt;
    });
    return found == reads_.end() ? nullptr : &*found;
}

const ConversationPreview::Read* ConversationPreview::latest() const {
    if (const Read* exact = known()) return exact;
    const auto older = std::ranges::find(reads_.rbegin(), reads_.rend(), record_->filePath, &Read::path);
    return older == reads_.rend() ? nullptr : &*older;
}

void ConversationPreview::read(const ViewContext& view) {
    isReading_ = true;
    reading_ = {};
    runInBackground(
        view.store.pool(), view.store.loop(),
        [path = record_->filePath, provider = record_->provider, at = record_->lastActivityAt,
         stop = reading_.get_token()] {
            return Read{.path = path,
                        .lastActivityAt = at,
                        .entries = ConversationFile::entries(path, provider, shownEntries, stop)};
        },
        // The view is there as long as its overlay is.
        [weak = std::weak_ptr(self_), &view](Read read) {
            if (const auto self = weak.lock()) (*self)->take(view, std::move(read));
        });
}

void ConversationPreview::take(const ViewContext& view, Read read) {
    isReading_ = false;
    if (!reading_.stop_requested()) {
        reads_.push_back(std::move(read));
        if (reads_.size() > keptReads) reads_.pop_front();
        linesOf_ = nullptr;
    }
    if (record_ && known() == nullptr) this->read(view);
    view.actions.requestFrame();
}

std::vector<StyledLine> ConversationPreview::facts(const ViewContext& view, int cols) const {
    const L10n& l10n = view.l10n;
    std::vector<StyledLine> lines;
    for (std::string& line : wrapped(Text::oneLine(record_->title), cols))
        lines.push_back({.text = std::move(line), .look = ViewLook::bold});
    lines.resize(std::min(lines.size(), titleRows));
    std::string counts =
        std::string(rawValue(record_->provider)) + " · " + l10n.plural("view.preview.messages", record_->messageCount);
    if (record_->approximateTokens > 0)
        counts += " · " + l10n.plural("view.preview.tokens", record_->approximateTokens);
    lines.push_back({.text = std::move(counts)});
    lines.push_back({.text = timesOf(view, *record_)});
    lines.push_back({.text = Text::oneLine(record_->projectPath), .look = ViewLook::dim});
    if (const SessionController* running = ConversationResume::sessionIn(view.store, *record_)) {
        lines.push_back({.text = l10n.text("view.preview.open", Text::oneLine(running->title())),
                         .look = ViewLook::colored(ViewLook::green)});
    }
    return lines;
}

void ConversationPreview::paint(const ViewContext& view, CanvasPen& pen, const CellRect& area) {
    if (!record_ || area.isEmpty()) return;
    int y = area.y;
    for (const StyledLine& line : facts(view, area.cols))
        pen.text(area.x, y++, line.text, line.look, area.cols);
    if (y >= area.bottom()) return;
    pen.fill({area.x, y, area.cols, 1}, ViewLook::dim, U'─');
    paintThread(view, pen, {area.x, y + 1, area.cols, area.bottom() - y - 1});
}

void ConversationPreview::paintThread(const ViewContext& view, CanvasPen& pen, const CellRect& area) {
    pageRows_ = std::max(1, area.rows);
    const Read* read = latest();
    if (read == nullptr || area.isEmpty()) return;
    if (!read->entries) {
        const std::string why = view.l10n.text("view.preview.unreadable", read->entries.error().message());
        int y = area.y;
        for (const std::string& line : wrapped(why, area.cols))
            pen.text(area.x, y++, line, ViewLook::dim, area.cols);
        return;
    }
    if (linesOf_ != read || linesCols_ != area.cols) {
        lines_ = ThreadLines::of(*read->entries, view.l10n, area.cols);
        linesOf_ = read;
        linesCols_ = area.cols;
    }
    const auto count = static_cast<int>(lines_.size());
    above_ = std::clamp(above_, 0, std::max(0, count - area.rows));
    const int first = std::max(0, count - area.rows - above_);
    for (int row = 0; row < area.rows && first + row < count; ++row) {
        const StyledLine& line = lines_[static_cast<std::size_t>(first) + static_cast<std::size_t>(row)];
        pen.text(area.x, area.y + row, line.text, line.look, area.cols);
    }
}

}  // namespace orvane
