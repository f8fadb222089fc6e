#include "OrvaneShell/View/Overlays/HistoryMode.h"

#include <algorithm>

#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

Terminal* terminalOf(const ViewContext& view, const Uuid& id) {
    const SessionController* session = view.store.session(id);
    return session == nullptr || session->terminal() == nullptr ? nullptr : &session->terminal()->terminal;
}

}  // namespace

void HistoryMode::scroll(Terminal& terminal, int rows) {
    terminal.scrollTo(std::clamp(terminal.getTopVisibleRow() + rows, 0, terminal.buffer().yBase()));
}

bool HistoryMode::isAtNewest(const Terminal& terminal) {
    return terminal.getTopVisibleRow() >= terminal.buffer().yBase();
}

void HistoryMode::paint(const ViewContext& view, Canvas& canvas) {
    canvas.cursor.reset();
    if (!isTyping_) return;
    const CellRect row = view.layout.hints;
    CanvasPen pen(canvas, row);
    pen.fill(row, ViewLook::plain);
    const int used = pen.text(row.x, row.y, view.l10n.text("view.history.search") + " ", ViewLook::bold);
    term_.paint(pen, canvas, row.x + used, row.y, row.cols - used);
}

ViewOverlay::Next HistoryMode::key(ViewContext& view, const KeyEvent& key) {
    Terminal* terminal = terminalOf(view, session_);
    if (terminal == nullptr) return Next::closes;
    return isTyping_ ? typeTerm(view, key) : move(view, *terminal, key);
}

ViewOverlay::Next HistoryMode::typeTerm(ViewContext& view, const KeyEvent& key) {
    if (key.name == KeyName::escape || (key.modifiers.control && key.character == 'c')) {
        isTyping_ = false;
    } else if (key.name == KeyName::enter) {
        isTyping_ = false;
        if (Terminal* terminal = terminalOf(view, session_)) find(view, *terminal, Toward::older);
    } else {
        term_.key(key);
    }
    return Next::stays;
}

ViewOverlay::Next HistoryMode::move(ViewContext& view, Terminal& terminal, const KeyEvent& key) {
    const int page = std::max(1, terminal.rows() - 1);
    const char32_t letter = key.name == KeyName::character ? key.character : 0;
    const bool isControl = key.modifiers.control;
    if (key.name == KeyName::escape || letter == 'q' || (isControl && letter == 'c')) return leave(view);
    if (key.name == KeyName::up || letter == 'k') {
        scroll(terminal, -1);
    } else if (key.name == KeyName::down || letter == 'j') {
        scroll(terminal, 1);
    } else if (key.name == KeyName::pageUp || letter == 'b') {
        scroll(terminal, -page);
    } else if (key.name == KeyName::pageDown || letter == ' ' || (isControl && letter == 'f')) {
        scroll(terminal, page);
    } else if (isControl && (letter == 'u' || letter == 'd')) {
        scroll(terminal, (letter == 'u' ? -page : page) / 2);
    } else if (key.name == KeyName::home || (letter == 'g' && !key.modifiers.shift)) {
        terminal.scrollTo(0);
    } else if (key.name == KeyName::end || letter == 'G' || letter == 'g') {
        terminal.scrollTo(terminal.buffer().yBase());
    } else if (letter == '/' || (isControl && letter == 'r')) {
        isTyping_ = true;
    } else if (letter == 'n' || letter == 'N') {
        const bool isNewer = letter == 'N' || key.modifiers.shift;
        find(view, terminal, isNewer ? Toward::newer : Toward::older);
    } else if (key.name == KeyName::enter && view.selection.session() == session_) {
        view.actions.copy(view.selection.text());
        return leave(view);
    }
    return Next::stays;
}

void HistoryMode::find(ViewContext& view, Terminal& terminal, Toward toward) {
    const std::string term = term_.text();
    if (term.empty()) return;
    if (search_ == nullptr) search_ = std::make_unique<SearchService>(terminal.buffer(), terminal.clusters());
    const auto found = toward == Toward::older ? search_->findPrevious(term, {}) : search_->findNext(term, {});
    if (!found || !*found) return view.say(view.l10n.text("view.history.notFound", term));
    const Position start = (*found)->start;
    Position last = (*found)->end;
    last.col = std::max(0, last.col - 1);
    view.selection.select(session_, terminal, start, last);
    const int top = terminal.getTopVisibleRow();
    if (start.row < top || start.row >= top + terminal.rows()) {
        terminal.scrollTo(std::clamp(start.row - terminal.rows() / 2, 0, terminal.buffer().yBase()));
    }
}

ViewOverlay::Next HistoryMode::leave(ViewContext& view) {
    dismissed(view);
    return Next::closes;
}

ViewOverlay::Next HistoryMode::text(ViewContext& /*view*/, const std::string& pasted) {
    if (isTyping_) term_.insert(pasted);
    return Next::stays;
}

ViewOverlay::Next HistoryMode::refresh(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->id() == session_) return Next::stays;
    return leave(view);
}

void HistoryMode::dismissed(ViewContext& view) {
    view.selection.clear();
    search_.reset();
    if (Terminal* terminal = terminalOf(view, session_)) terminal->scrollTo(terminal->buffer().yBase());
}

std::string HistoryMode::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.history");
}

}  // namespace orvane
