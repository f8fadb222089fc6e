#include "OrvaneShell/View/Overlays/HistoryMode.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Overlays/HistorySave.h"
#include "OrvaneShell/View/TracePanel.h"
#include "OrvaneShell/View/ViewContext.h"
#include "TerminalEmulator/HeadlessTerminal.h"
#include "TerminalEmulator/Selection/TextMotion.h"

namespace orvane {

namespace {

constexpr int largestCount = 9999;

Terminal* terminalOf(const ViewContext& view, const Uuid& id) {
    const SessionController* session = view.store.session(id);
    return session == nullptr || session->terminal() == nullptr ? nullptr : &session->terminal()->terminal;
}

/// Where the text of a session shows, without what its trace covers; empty when it does not.
CellRect textArea(const ViewContext& view, const Uuid& session) {
    const auto pane = std::ranges::find(view.layout.panes, session, &ViewLayout::Pane::content);
    if (pane == view.layout.panes.end()) return {};
    CellRect area = pane->body;
    if (view.tracePanel(session) != nullptr) area.cols -= TracePanel::area(area).cols;
    return area;
}

}  // namespace

HistoryMode::HistoryMode(const Uuid& session, Terminal& terminal) : session_(session), cursor_(terminal) {
    terminal.holdView();
}

void HistoryMode::scroll(Terminal& terminal, int rows) {
    terminal.scrollTo(std::clamp(terminal.getTopVisibleRow() + rows, 0, terminal.buffer().yBase()));
}

bool HistoryMode::isAtNewest(const Terminal& terminal) {
    return terminal.getTopVisibleRow() >= terminal.buffer().yBase();
}

void HistoryMode::beginSearch(const ViewContext& view) {
    if (const Terminal* terminal = terminalOf(view, session_))
        search_.begin(*terminal, cursor_, CopySearch::Toward::older);
}

void HistoryMode::paint(const ViewContext& view, Canvas& canvas) {
    canvas.cursor.reset();
    Terminal* terminal = terminalOf(view, session_);
    const CellRect area = textArea(view, session_);
    if (terminal == nullptr || area.isEmpty()) return;
    followSelection(view, *terminal);
    CanvasPen pen(canvas, area);
    search_.paintHits(pen, area, *terminal);
    const Position at = cursor_.at(*terminal);
    const int x = area.x + at.col;
    const int y = area.y + at.row - terminal->getTopVisibleRow();
    if (area.contains(x, y)) canvas.cursor = Canvas::Cursor{.x = x, .y = y, .style = CursorStyle::steadyBlock};
    if (prompt_ != nullptr) prompt_->paint(view, canvas);
}

bool HistoryMode::paintRow(const ViewContext& view, Canvas& canvas, const CellRect& row) {
    if (!search_.isTyping()) return false;
    CanvasPen pen(canvas, row);
    search_.paintRow(view, pen, canvas, row);
    return true;
}

ViewOverlay::Next HistoryMode::key(ViewContext& view, const KeyEvent& key) {
    Terminal* terminal = terminalOf(view, session_);
    if (terminal == nullptr) return leave(view);
    view.unsay(view.notice());  // what was said is read, and the hint tells the keys again
    if (prompt_ != nullptr) {
        if (prompt_->key(view, key) == Next::closes) prompt_.reset();
        return Next::stays;
    }
    followSelection(view, *terminal);
    if (search_.isTyping()) {
        search_.key(view, *terminal, cursor_, key);
        extendSelection(view, *terminal);
        return Next::stays;
    }
    if (takeCount(key)) return Next::stays;
    const auto meaning = copyKey(key);
    if (meaning && std::holds_alternative<CopyAction>(*meaning)) {
        count_ = 0;
        return act(view, *terminal, std::get<CopyAction>(*meaning));
    }
    const int times = std::max(1, std::exchange(count_, 0));
    for (int i = 0; meaning && i < times; ++i)
        move(view, *terminal, std::get<CopyMotion>(*meaning));
    return Next::stays;
}

/// "12j" goes down twelve rows; a zero alone is a motion.
bool HistoryMode::takeCount(const KeyEvent& key) {
    const bool isDigit = key.name == KeyName::character && key.modifiers.isNone() && key.character >= '0' &&
                         key.character <= '9' && (count_ > 0 || key.character != '0');
    if (isDigit) count_ = std::min(largestCount, count_ * 10 + static_cast<int>(key.character - '0'));
    return isDigit;
}

ViewOverlay::Next HistoryMode::act(ViewContext& view, Terminal& terminal, CopyAction action) {
    switch (action) {
        case CopyAction::selectCharacters:
            select(view, terminal, SelectionMode::character);
            break;
        case CopyAction::selectRows:
            select(view, terminal, SelectionMode::row);
            break;
        case CopyAction::selectBlock:
            select(view, terminal, SelectionMode::block);
            break;
        case CopyAction::swapEnds:
            swapEnds(view, terminal);
            break;
        case CopyAction::copy:
            return copy(view, terminal);
        case CopyAction::searchOlder:
            search_.begin(terminal, cursor_, CopySearch::Toward::older);
            break;
        case CopyAction::searchNewer:
            search_.begin(terminal, cursor_, CopySearch::Toward::newer);
            break;
        case CopyAction::nextHit:
            search_.next(view, terminal, cursor_, CopySearch::Course::on);
            break;
        case CopyAction::previousHit:
            search_.next(view, terminal, cursor_, CopySearch::Course::back);
            break;
        case CopyAction::searchWordOlder:
            search_.searchWord(view, terminal, cursor_, CopySearch::Toward::older);
            break;
        case CopyAction::searchWordNewer:
            search_.searchWord(view, terminal, cursor_, CopySearch::Toward::newer);
            break;
        case CopyAction::previousPrompt:
        case CopyAction::nextPrompt:
            toPrompt(view, terminal, action);
            break;
        case CopyAction::save:
            save(view);
            return Next::stays;
        case CopyAction::stepBack:
            if (!isSelecting(view)) return leave(view);
            view.selection.clear();
            return Next::stays;
        case CopyAction::leave:
            return leave(view);
    }
    extendSelection(view, terminal);
    return Next::stays;
}

void HistoryMode::move(ViewContext& view, Terminal& terminal, CopyMotion motion) {
    cursor_.move(terminal, motion, columns(view));
    extendSelection(view, terminal);
}

CopyCursor::Columns HistoryMode::columns(const ViewContext& view) const {
    const bool isBlock = isSelecting(view) && view.selection.mode() == SelectionMode::block;
    return isBlock ? CopyCursor::Columns::all : CopyCursor::Columns::ofText;
}

/// The same key again ends it; another one selects in its own way from the same place.
void HistoryMode::select(ViewContext& view, const Terminal& terminal, SelectionMode mode) {
    const bool isSame = isSelecting(view) && view.selection.mode() == mode;
    const auto pivot = isSelecting(view) ? view.selection.pivot() : std::nullopt;
    if (isSame) return view.selection.clear();
    view.selection.begin(session_, terminal, pivot.value_or(cursor_.at(terminal)), mode);
}

void HistoryMode::swapEnds(ViewContext& view, Terminal& terminal) {
    const auto pivot = isSelecting(view) ? view.selection.pivot() : std::nullopt;
    if (!pivot) return;
    view.selection.begin(session_, terminal, cursor_.at(terminal), view.selection.mode());
    cursor_.jump(terminal, *pivot);
}

void HistoryMode::extendSelection(ViewContext& view, const Terminal& terminal) const {
    if (isSelecting(view)) view.selection.extend(terminal, cursor_.at(terminal));
}

void HistoryMode::followSelection(const ViewContext& view, Terminal& terminal) {
    const auto head = isSelecting(view) ? view.selection.head(terminal) : std::nullopt;
    if (head && *head != cursor_.at(terminal)) cursor_.place(terminal, *head);
}

void HistoryMode::toPrompt(ViewContext& view, Terminal& terminal, CopyAction action) {
    const TextMotion text(terminal.buffer(), terminal.clusters());
    const Position at = cursor_.at(terminal);
    const bool isPrevious = action == CopyAction::previousPrompt;
    const auto prompt = isPrevious ? text.promptAbove(at) : text.promptBelow(at);
    if (prompt) return cursor_.jump(terminal, *prompt, CopyCursor::Sight::top);
    const bool hasAny = text.promptAbove({.row = terminal.buffer().count()}).has_value();
    view.say(view.l10n.text(!hasAny ? "view.prompts.none" : isPrevious ? "view.prompts.first" : "view.prompts.last"));
}

void HistoryMode::save(ViewContext& view) {
    const SessionController* session = view.store.session(session_);
    if (session != nullptr) prompt_ = HistorySave::prompt(view, *session);
}

/// What is selected, or else the hit that the search came to.
ViewOverlay::Next HistoryMode::copy(ViewContext& view, const Terminal& terminal) {
    const std::string text = isSelecting(view) ? view.selection.text() : search_.hitText(terminal, cursor_);
    if (!text.empty()) {
        view.actions.copy(text);
        view.say(view.l10n.plural("view.copied", static_cast<long long>(Text::characterCount(text))));
    }
    return leave(view);
}

ViewOverlay::Next HistoryMode::leave(ViewContext& view) {
    dismissed(view);
    return Next::closes;
}

ViewOverlay::Next HistoryMode::text(ViewContext& view, const std::string& pasted) {
    if (prompt_ != nullptr) return prompt_->text(view, pasted);
    Terminal* terminal = terminalOf(view, session_);
    if (terminal != nullptr && search_.isTyping()) search_.text(*terminal, cursor_, pasted);
    return Next::stays;
}

ViewOverlay::Next HistoryMode::click(ViewContext& view, int x, int y) {
    Terminal* terminal = terminalOf(view, session_);
    const CellRect area = textArea(view, session_);
    if (terminal == nullptr || prompt_ != nullptr || !area.contains(x, y)) return Next::stays;
    const int row = terminal->getTopVisibleRow() + y - area.y;
    const int col = std::min(x - area.x, TextMotion(terminal->buffer(), terminal->clusters()).lastCol(row));
    cursor_.place(*terminal, {row, col});
    return Next::stays;
}

bool HistoryMode::wheel(ViewContext& view, int x, int y, int rows) {
    Terminal* terminal = terminalOf(view, session_);
    if (terminal == nullptr || !textArea(view, session_).contains(x, y)) return false;
    followSelection(view, *terminal);
    cursor_.scroll(*terminal, rows, columns(view));
    extendSelection(view, *terminal);
    return true;
}

ViewOverlay::Next HistoryMode::refresh(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session != nullptr && session->id() == session_) return Next::stays;
    return leave(view);
}

void HistoryMode::dismissed(ViewContext& view) {
    if (isSelecting(view)) view.selection.clear();
    if (Terminal* terminal = terminalOf(view, session_)) terminal->followNewest();
}

std::string HistoryMode::hint(const ViewContext& view) const {
    if (prompt_ != nullptr) return prompt_->hint(view);
    if (isSelecting(view)) return view.l10n.text("view.hint.selecting");
    const std::string count = search_.count();
    return (count.empty() ? "" : count + "  ") + view.l10n.text("view.hint.history");
}

}  // namespace orvane
