#include "OrvaneShell/View/Painting/PaneTitle.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
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

/// What the title row says at its right end.
std::string stateOf(const ViewContext& view, const SessionController& session) {
    if (!session.transientNotice().empty()) return session.transientNotice();
    if (SessionQuestion::isAsked(session)) {
        return SessionQuestion::of(session).line() + "  [" + view.leaderText() + " a]";
    }
    if (!session.isActive()) {
        return statusText(view.l10n, JSONObject(sessionJson(session))) + "  " + view.l10n.text("view.pane.ended");
    }
    return isAgent(session.identity().kind) ? statusText(view.l10n, JSONObject(sessionJson(session))) : std::string();
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
    if (session == nullptr) return;
    const SessionMark mark = SessionMark::of(*session);
    put(" ", line);
    put(mark.glyph, mark.look);
    put(" " + Text::oneLine(session->title()) + " ", isFocused ? ViewLook::bold : ViewLook::plain);
    if (view.zoomedLeaf == pane.leaf) put(view.l10n.text("view.pane.zoomed") + " ", ViewLook::key);
    put(historyPlace(*session), ViewLook::key);
    const std::string state = Text::oneLine(stateOf(view, *session));
    if (state.empty()) return;
    const bool isCalling = SessionQuestion::isAsked(*session);
    const int room = std::max(0, end - x - 2);
    const int width = std::min(room, static_cast<int>(Text::displayWidth(state)) + 2);
    pen.text(end - width, row.y, " " + state + " ",
             isCalling ? ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold) : line, width);
}

}  // namespace orvane::PaneTitle
