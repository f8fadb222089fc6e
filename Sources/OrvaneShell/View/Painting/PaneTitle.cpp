#include "OrvaneShell/View/Painting/PaneTitle.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
#include "OrvaneShell/View/Painting/ContextGauge.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/SessionMark.h"
#include "OrvaneShell/View/SessionQuestion.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::PaneTitle {

namespace {

/// Where the person is in the history, as "-120".
std::string historyPlace(const SessionController& session) {
    if (session.terminal() == nullptr) return {};
    const Terminal& terminal = session.terminal()->terminal;
    if (HistoryMode::isAtNewest(terminal)) return {};
    return "-" + std::to_string(terminal.buffer().yBase() - terminal.getTopVisibleRow());
}

/// What the title row says at its right end: a text, and the keys that help, which stay when the text is cut.
struct State {
    std::string text;
    std::string keys;
};

State stateOf(const ViewContext& view, const SessionController& session) {
    if (!session.transientNotice().empty()) return {.text = Text::oneLine(session.transientNotice()), .keys = {}};
    if (SessionQuestion::isAsked(session))
        return {.text = SessionQuestion::of(session).line(), .keys = "[" + view.keysOf("answer") + "]"};
    if (session.isActive() && !isAgent(session.identity().kind)) return {};
    return {.text = Text::oneLine(statusText(view.l10n, JSONObject(sessionJson(session)))),
            .keys = session.isActive() ? std::string() : view.l10n.text("view.pane.ended")};
}

int widthOf(const std::string& text) {
    return static_cast<int>(Text::displayWidth(text));
}

/// Between two columns of the row, at the right. Returns where it begins.
int paintState(CanvasPen& pen, const State& state, const Attribute& look, int start, int end, int y) {
    const int room = end - start - 2;  // a blank at both sides
    const std::string keys = state.keys.empty() || state.text.empty() ? state.keys : "  " + state.keys;
    const int textCols = std::max(0, std::min(room - widthOf(keys), widthOf(state.text)));
    const int width = std::min(room, textCols + widthOf(keys));
    if (width <= 0) return end;
    const int x = end - width - 1;
    pen.text(x - 1, y, " ", look);
    pen.text(x, y, state.text, look, textCols);
    pen.text(x + textCols, y, keys, look, width - textCols);
    pen.text(end - 1, y, " ", look);
    return x - 1;
}

/// The longest form that leaves some of the line on both sides.
void paintGauge(CanvasPen& pen, TerminalAgent& agent, const Attribute& line, int start, int end, int y) {
    const ContextGauge::Facts facts = ContextGauge::of(agent);
    const Attribute look = facts.isWarning() ? ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold) : line;
    for (const std::string& form : ContextGauge::forms(facts)) {
        const int width = widthOf(form) + 2;
        if (end - start < width + 2) continue;
        pen.text(end - width - 1, y, " " + form + " ", look);
        return;
    }
}

}  // namespace

void paint(const ViewContext& view, CanvasPen& pen, const ViewLayout::Pane& pane) {
    const CellRect& row = pane.title;
    if (row.isEmpty()) return;
    const bool isFocused = view.focusedLeaf() == pane.leaf;
    const Attribute line = isFocused ? ViewLook::colored(ViewLook::green) : ViewLook::dim;
    pen.fill(row, line, U'─');
    const SessionController* session = view.sessionIn(pane);
    int x = row.x + 1;
    const int end = row.right() - 1;
    const auto put = [&](std::string_view text, const Attribute& look) {
        x += pen.text(x, row.y, text, look, std::max(0, end - x));
    };
    const auto comingBack = session == nullptr ? view.comingBack(pane.leaf) : std::nullopt;
    if (session == nullptr && !comingBack) return;
    const SessionMark mark = session == nullptr ? SessionMark::comingBack() : SessionMark::of(*session);
    put(" ", line);
    put(mark.glyph, mark.look);
    put(" " + (session == nullptr ? *comingBack : Text::oneLine(session->title())) + " ",
        isFocused ? ViewLook::bold : ViewLook::plain);
    if (session == nullptr) return;
    if (view.zoomedLeaf == pane.leaf) put(view.l10n.text("view.pane.zoomed") + " ", ViewLook::key);
    put(historyPlace(*session), ViewLook::key);
    const bool isCalling = SessionQuestion::isAsked(*session);
    const int left =
        paintState(pen, stateOf(view, *session),
                   isCalling ? ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold) : line, x + 1, end, row.y);
    if (session->agent() != nullptr) paintGauge(pen, *session->agent(), line, x, left, row.y);
}

int nameEnd(const ViewContext& view, const ViewLayout::Pane& pane) {
    const SessionController* session = view.sessionIn(pane);
    if (session == nullptr) return pane.title.x;
    // A corner, a blank, the mark, a blank, the name and another blank.
    return std::min(pane.title.x + 5 + widthOf(Text::oneLine(session->title())), pane.title.right() - 1);
}

}  // namespace orvane::PaneTitle
