#include "OrvaneShell/View/Overlays/ConversationsOverlay.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/Host/ConversationResume.h"
#include "OrvaneShell/View/Painting/ConversationRows.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

using SortField = SessionHistory::SortField;

/// Wider and higher it would only move eyes and mouse further.
constexpr int mostCols = 190;
constexpr int mostRows = 70;
constexpr int headRows = 2;

/// The one behind `current`, the first behind the last.
template <typename Value, std::size_t count>
Value after(const std::array<Value, count>& all, const Value& current) {
    const auto found = std::ranges::find(all, current);
    return found == all.end() || found + 1 == all.end() ? all.front() : *(found + 1);
}

std::set<TranscriptProvider> nextProviders(const std::set<TranscriptProvider>& current) {
    using enum TranscriptProvider;
    static const std::array<std::set<TranscriptProvider>, 4> all = {{{}, {claude}, {codex}, {gemini}}};
    return after(all, current);
}

SessionHistory::Sort nextSort(const SessionHistory::Sort& current) {
    using enum SortField;
    static constexpr std::array all = {lastActivity, title, project, messages};
    return SessionHistory::naturalSort(after(all, current.field));
}

std::string projectPath(const ViewContext& view) {
    const Project* project = view.project() ? view.store.workspace().project(*view.project()) : nullptr;
    return project == nullptr ? std::string() : project->path;
}

}  // namespace

ConversationsOverlay::ConversationsOverlay(ViewContext& view) : view_(view) {
    HistoryService& history = view.history;
    changes_ = history.changed.subscribe([this] { noteRows(); });
    history.setSearchText({});
    history.setProviderFilter({});
    history.setProjectFilter(std::nullopt);
    history.setSort(SessionHistory::Sort::byRecency);
    isNewSearch_ = true;
    noteRows();
    history.refresh();
}

const HistoryCorpus::Row* ConversationsOverlay::chosen() const {
    const auto& rows = view_.history.rows();
    return chosen_ < rows.size() ? &rows[chosen_] : nullptr;
}

bool ConversationsOverlay::isSettled() const {
    const HistoryService& history = view_.history;
    // The first look at the disk may still find what a search did not.
    return !history.searching() && !(history.indexing() && history.rows().empty());
}

void ConversationsOverlay::beginSearch() {
    isNewSearch_ = true;
    isAccepted_ = false;
    noteRows();
}

void ConversationsOverlay::noteRows() {
    const auto& rows = view_.history.rows();
    const auto path = [](const HistoryCorpus::Row& row) -> const std::string& { return row.record.filePath; };
    const auto kept = std::ranges::find(rows, chosenPath_, path);
    if (isNewSearch_ && isSettled()) {
        isNewSearch_ = false;
        moveTo(0);
    } else if (kept != rows.end()) {
        moveTo(static_cast<int>(kept - rows.begin()));
    } else {
        moveTo(static_cast<int>(chosen_));
    }
    // That ends the overlay when the conversation is open already.
    if (!isNewSearch_ && std::exchange(isAccepted_, false) && resume() == Next::closes) return view_.close();
    view_.actions.requestFrame();
}

void ConversationsOverlay::moveTo(int row) {
    HistoryService& history = view_.history;
    const auto last = static_cast<int>(history.rows().size()) - 1;
    chosen_ = static_cast<std::size_t>(std::clamp(row, 0, std::max(0, last)));
    const HistoryCorpus::Row* now = chosen();
    chosenPath_ = now == nullptr ? std::string() : now->record.filePath;
    if (now == nullptr) {
        preview_.clear();
    } else {
        preview_.show(view_, now->record);
    }
    if (row >= last && !history.searching() && !history.indexing()) history.loadMore();
}

void ConversationsOverlay::move(int by) {
    if (part_ == Part::preview) return preview_.scroll(by);
    moveTo(static_cast<int>(chosen_) + by);
}

bool ConversationsOverlay::moveKey(const KeyEvent& key) {
    const int page = std::max(1, part_ == Part::preview ? preview_.pageRows() : list_.rows);
    constexpr int far = 1 << 20;
    const bool isControl = key.name == KeyName::character && key.modifiers.control;
    if (key.name == KeyName::up || (isControl && key.character == 'p')) {
        move(-1);
    } else if (key.name == KeyName::down || (isControl && key.character == 'n')) {
        move(1);
    } else if (key.name == KeyName::pageUp) {
        move(-page);
    } else if (key.name == KeyName::pageDown) {
        move(page);
    } else if (key.name == KeyName::home) {
        move(-far);
    } else if (key.name == KeyName::end) {
        move(far);
    } else {
        return false;
    }
    return true;
}

/// Letters with Control alone: all others are typed.
bool ConversationsOverlay::filterKey(char32_t letter) {
    HistoryService& history = view_.history;
    if (letter == 'f') {
        history.setProviderFilter(nextProviders(history.providerFilter()));
    } else if (letter == 'o') {
        const std::string project = projectPath(view_);
        const bool isNarrow = history.projectFilter().has_value() || project.empty();
        history.setProjectFilter(isNarrow ? std::nullopt : std::optional(project));
    } else if (letter == 's') {
        history.setSort(nextSort(history.sort()));
    } else {
        return false;
    }
    beginSearch();
    return true;
}

ViewOverlay::Next ConversationsOverlay::key(ViewContext& view, const KeyEvent& key) {
    const bool isControl = key.name == KeyName::character && key.modifiers.control;
    if (key.name == KeyName::escape || (isControl && key.character == 'c')) return Next::closes;
    if (key.name == KeyName::enter) return resume();
    if (key.name == KeyName::tab) {
        part_ = part_ == Part::list ? Part::preview : Part::list;
    } else if (!moveKey(key) && !(isControl && filterKey(key.character)) && search_.key(key)) {
        part_ = Part::list;
        view.history.setSearchText(search_.text());
        beginSearch();
    }
    return Next::stays;
}

ViewOverlay::Next ConversationsOverlay::text(ViewContext& view, const std::string& pasted) {
    search_.insert(pasted);
    view.history.setSearchText(search_.text());
    beginSearch();
    return Next::stays;
}

ViewOverlay::Next ConversationsOverlay::click(ViewContext& /*view*/, int x, int y) {
    const auto row = first_ + static_cast<std::size_t>(std::max(0, y - list_.y));
    if (previewArea_.contains(x, y)) part_ = Part::preview;
    if (!list_.contains(x, y) || row >= view_.history.rows().size()) return Next::stays;
    part_ = Part::list;
    if (row == chosen_) return resume();
    moveTo(static_cast<int>(row));
    return Next::stays;
}

bool ConversationsOverlay::wheel(ViewContext& /*view*/, int x, int y, int rows) {
    if (previewArea_.contains(x, y)) {
        preview_.scroll(rows);
    } else {
        moveTo(static_cast<int>(chosen_) + rows);
    }
    return true;
}

ViewOverlay::Next ConversationsOverlay::resume() {
    if (isNewSearch_ && !isSettled()) {
        isAccepted_ = true;
        return Next::stays;
    }
    const HistoryCorpus::Row* row = chosen();
    if (row == nullptr || isResuming_) return Next::stays;
    if (const SessionController* running = ConversationResume::sessionIn(view_.store, row->record)) {
        view_.zoomedLeaf.reset();
        view_.store.selectSession(Uuid(running->id()));
        return Next::closes;
    }
    isResuming_ = true;
    ConversationResume::start(view_.store, view_.l10n, row->record,
                              [this, weak = std::weak_ptr(isAlive_)](const ConversationResume::Resumed& resumed) {
                                  if (weak.lock()) this->resumed(resumed ? std::string() : resumed.error().message);
                              });
    return Next::stays;
}

/// Refused when there is a text, which leaves the list for another choice. May end this overlay.
void ConversationsOverlay::resumed(const std::string& refusal) {
    isResuming_ = false;
    if (!refusal.empty()) return view_.say(refusal);
    view_.zoomedLeaf.reset();
    view_.close();
}

void ConversationsOverlay::place(const Canvas& canvas, const CellRect& inside) {
    const CellRect body{inside.x, inside.y + headRows, inside.cols, std::max(0, inside.rows - headRows)};
    list_ = previewArea_ = {};
    if (canvas.cols() >= colsForPreview) {
        list_ = {body.x, body.y, body.cols * 11 / 20, body.rows};
        previewArea_ = {list_.right() + 2, body.y, body.right() - list_.right() - 2, body.rows};
    } else if (part_ == Part::preview) {
        previewArea_ = body;
    } else {
        list_ = body;
    }
}

void ConversationsOverlay::paint(const ViewContext& view, Canvas& canvas) {
    const CellRect inside =
        DialogBox::paint(canvas, view.l10n.text("view.conversations.title"), std::min(canvas.cols() - 4, mostCols),
                         std::min(canvas.rows() - 3, mostRows));
    place(canvas, inside);
    CanvasPen pen(canvas, inside);
    if (!list_.isEmpty()) paintList(view, pen);
    preview_.paint(view, pen, previewArea_);
    if (!list_.isEmpty() && !previewArea_.isEmpty()) {
        const Attribute line = part_ == Part::preview ? ViewLook::colored(ViewLook::green) : ViewLook::dim;
        pen.fill({list_.right(), list_.y, 1, list_.rows}, line, U'│');
    }
    paintFilters(view, pen, {inside.x, inside.y + 1, inside.cols, 1});
    paintSearch(view, canvas, {inside.x, inside.y, inside.cols, 1});
}

void ConversationsOverlay::paintSearch(const ViewContext& view, Canvas& canvas, const CellRect& row) {
    CanvasPen pen(canvas, row);
    const HistoryService& history = view.history;
    std::string state = view.l10n.text("view.conversations.shown", history.rows().size(), history.totalMatches());
    if (isResuming_) {
        state = view.l10n.text("view.conversations.resuming");
    } else if (history.indexing()) {
        state = view.l10n.text("view.conversations.indexing") + "  " + state;
    }
    const int width = std::min(static_cast<int>(Text::displayWidth(state)), row.cols / 2);
    pen.text(row.right() - width, row.y, state, ViewLook::dim, width);
    const int prompt = pen.text(row.x, row.y, "> ", ViewLook::dim);
    search_.paint(pen, canvas, row.x + prompt, row.y, std::max(1, row.cols - prompt - width - 2));
}

void ConversationsOverlay::paintFilters(const ViewContext& view, CanvasPen& pen, const CellRect& row) const {
    const HistoryService& history = view.history;
    const bool isSearch = !Text::trimmed(history.searchText()).empty();
    const bool isByRecency = history.sort().field == SortField::lastActivity;
    const std::string sort = isSearch && isByRecency ? "bestMatch" : std::string(rawValue(history.sort().field));
    int x = row.x;
    const auto put = [&](const char* key, const std::string& text, bool isNarrow) {
        x += pen.text(x, row.y, key, ViewLook::key, row.right() - x) + 1;
        x += pen.text(x, row.y, text, isNarrow ? ViewLook::bold : ViewLook::dim, row.right() - x) + 2;
    };
    const auto& providers = history.providerFilter();
    put("C-f",
        providers.empty() ? view.l10n.text("view.conversations.allAgents") : std::string(rawValue(*providers.begin())),
        !providers.empty());
    const auto& project = history.projectFilter();
    put("C-o",
        project ? Text::oneLine(project->substr(project->rfind('/') + 1))
                : view.l10n.text("view.conversations.allProjects"),
        project.has_value());
    put("C-s", view.l10n.text("view.conversations.sort." + sort), !isByRecency);
}

void ConversationsOverlay::paintList(const ViewContext& view, CanvasPen& pen) {
    const auto& rows = view.history.rows();
    const auto room = static_cast<std::size_t>(list_.rows);
    // No blank rows at the end, and the chosen one in sight.
    const std::size_t lastFirst = rows.size() > room ? rows.size() - room : 0;
    first_ = std::min(std::clamp(first_, chosen_ >= room ? chosen_ + 1 - room : 0, chosen_), lastFirst);
    if (rows.empty()) {
        if (isSettled()) pen.text(list_.x + 1, list_.y, view.l10n.text("history.empty"), ViewLook::dim, list_.cols - 2);
        return;
    }
    const auto shown = std::span(rows).subspan(first_, std::min(room, rows.size() - first_));
    ConversationRows::paint(pen, list_, shown, chosen_ - first_);
}

std::string ConversationsOverlay::hint(const ViewContext& view) const {
    return view.l10n.text(part_ == Part::list ? "view.hint.conversations" : "view.hint.conversationPreview");
}

}  // namespace orvane
