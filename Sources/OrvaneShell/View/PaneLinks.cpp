#include "OrvaneShell/View/PaneLinks.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/ViewContext.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::PaneLinks {

namespace {

/// What a desktop shows and does not run.
constexpr std::array<std::string_view, 5> harmless = {"http://", "https://", "mailto:", "ftp://", "gemini://"};

const Terminal* terminalIn(const ViewContext& view, const ViewLayout::Pane& pane) {
    const SessionController* session = view.sessionIn(pane);
    return session == nullptr || session->terminal() == nullptr ? nullptr : &session->terminal()->terminal;
}

/// Each look gathers the rows that belong together, and a screen has ten thousand cells.
constexpr int mostLooks = 400;

/// Marked by its program, or the colon that every address in a text has behind its scheme.
bool mayBeLink(const StoredCell& cell) {
    return cell.payload().target() != nullptr || cell.code() == ':';
}

bool isHarmless(const std::string& address) {
    const std::string folded = Text::caseFolded(address);
    return std::ranges::any_of(harmless, [&](std::string_view scheme) { return folded.starts_with(scheme); });
}

}  // namespace

std::optional<LinkMatch> at(const ViewContext& view, const ViewLayout::Pane& pane, int x, int y) {
    const Terminal* terminal = terminalIn(view, pane);
    if (terminal == nullptr || !pane.body.contains(x, y)) return std::nullopt;
    return terminal->link({.row = terminal->getTopVisibleRow() + y - pane.body.y, .col = x - pane.body.x},
                          LinkMode::explicitAndImplicit);
}

std::vector<LinkMatch> shown(const ViewContext& view, const ViewLayout::Pane& pane) {
    const Terminal* terminal = terminalIn(view, pane);
    std::vector<LinkMatch> links;
    if (terminal == nullptr) return links;
    const int top = terminal->getTopVisibleRow();
    int looks = mostLooks;
    for (int row = 0; row < terminal->rows(); ++row) {
        const RowView cells = terminal->buffer().row(top + row);
        for (int col = 0; col < terminal->cols() && looks > 0; ++col) {
            if (!mayBeLink(cells.at(col))) continue;
            --looks;
            auto link = terminal->link({.row = top + row, .col = col}, LinkMode::explicitAndImplicit);
            if (!link) continue;
            col = std::max(col, link->range.endCol - 1);
            const bool isKnown = std::ranges::find(links, link->text, &LinkMatch::text) != links.end();
            if (!isKnown) links.push_back(*std::move(link));
        }
    }
    return links;
}

void open(ViewContext& view, const std::string& address) {
    const std::string shownAddress = Text::oneLine(address);
    if (isHarmless(address) && view.actions.openLink(address))
        return view.say(view.l10n.text("view.link.opened", shownAddress));
    view.actions.copy(address);
    view.say(view.l10n.text("view.link.copied", shownAddress));
}

void paint(CanvasPen& pen, const CellRect& body, const Terminal& terminal, const PaneLink& link) {
    const int top = terminal.getTopVisibleRow();
    for (const RowRange& part : link.match.rowRanges) {
        const int row = part.row - top;
        if (row < 0 || row >= body.rows) continue;
        const int start = std::min(part.cols.startCol, body.cols);
        pen.restyle(
            {body.x + start, body.y + row, std::min(part.cols.endCol, body.cols) - start, 1}, [](Attribute look) {
                look.style = look.style | Attribute::CharacterStyle::underline | Attribute::CharacterStyle::bold;
                return look;
            });
    }
}

}  // namespace orvane::PaneLinks
