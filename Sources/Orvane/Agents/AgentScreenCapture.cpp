#include "Orvane/Agents/AgentScreenCapture.h"

#include <algorithm>

#include "OrvaneCore/Agents/Signals/TerminalComposer.h"

namespace orvane {

namespace {

using Style = Attribute::CharacterStyle;

bool hasStyle(const CharData& cell, Style style) {
    return (cell.attribute.style & style) != Style::none;
}

/// Whether all text behind the marker and the borders is faint. The cursor's cell, which agents draw inverse
/// themselves, does not count.
bool isDim(const Terminal& terminal, const RowView& row) {
    bool isFaint = false;
    for (int col = 0; col < row.getTrimmedLength(); ++col) {
        const CharData cell = row.charData(col);
        if (hasStyle(cell, Style::dim)) {
            isFaint = true;
            continue;
        }
        const bool isText = row.at(col).width() > 0 && !TerminalComposer::isChrome(terminal.clusters().text(cell.code));
        if (isText && !hasStyle(cell, Style::inverse)) return false;
    }
    return isFaint;
}

}  // namespace

AgentScreen captureAgentScreen(const Terminal& terminal, SessionKind kind) {
    const Buffer& buffer = terminal.buffer();
    AgentScreen screen{
        .kind = kind, .rows = {}, .dimmed = {}, .title = terminal.terminalTitle(), .columns = buffer.cols()};
    const int first = std::max(0, buffer.count() - AgentScreen::rowsWanted);
    for (int row = first; row < buffer.count(); ++row) {
        const RowView view = buffer.row(row);
        screen.rows.push_back(
            view.translateToString(terminal.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true}));
        screen.dimmed.push_back(isDim(terminal, view));
    }
    return screen;
}

}  // namespace orvane
