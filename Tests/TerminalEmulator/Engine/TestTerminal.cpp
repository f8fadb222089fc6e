#include "TerminalEmulator/Engine/TestTerminal.h"

#include <fmt/format.h>

namespace orvane::testing {

std::string TestTerminal::cursor() const {
    const auto [x, y] = terminal.getCursorLocation();
    return fmt::format("{},{}{}", x, y, terminal.isWrapPending() ? "+" : "");
}

std::string TestTerminal::text(int from) const {
    std::string result;
    std::size_t end = 0;
    for (int row = from; row < terminal.buffer().count(); ++row) {
        const std::string line = terminal.buffer().row(row).translateToString(
            terminal.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true});
        result += line + "|";
        if (!line.empty()) end = result.size();
    }
    return result.substr(0, end);
}

std::string TestTerminal::snapshot() const {
    const Buffer& buffer = terminal.buffer();
    std::string result = fmt::format("cursor {} alt {} title {} cwd {} style {} size {}x{}\n", cursor(),
                                     terminal.isAlternateBufferActive(), terminal.terminalTitle(),
                                     terminal.hostCurrentDirectory().value_or("-"),
                                     static_cast<int>(terminal.cursorStyle()), terminal.cols(), terminal.rows());
    const TerminalModes& modes = terminal.modes();
    for (const bool flag :
         {modes.applicationCursor, modes.applicationKeypad, modes.reverseVideo, modes.originMode, modes.marginMode,
          modes.insertMode, modes.lineFeedMode, modes.wraparound, modes.cursorHidden, modes.bracketedPasteMode,
          modes.sendFocus, modes.synchronizedOutputActive, modes.reverseWraparound}) {
        result += flag ? '1' : '0';
    }
    result += fmt::format(" mouse {} {} region {}-{} sent {:?}\n", static_cast<int>(modes.mouseMode),
                          static_cast<int>(modes.mouseProtocol), buffer.scrollTop(), buffer.scrollBottom(),
                          std::string_view(delegate.sent));
    for (int row = 0; row < buffer.count(); ++row) {
        const RowView view = buffer.row(row);
        result += fmt::format("{}{}", view.isWrapped ? '+' : ' ', static_cast<int>(view.renderMode));
        for (int col = 0; col < view.cols; ++col) {
            const StoredCell cell = view.at(col);
            if (cell.isDefaultBlank()) {
                result += '_';
                continue;
            }
            // Handles depend on the order in which clusters were made, so they are shown as text.
            const std::string* link = terminal.hyperlink(cell);
            result +=
                fmt::format("[{} {:x} {:x} {:x} {}]", terminal.clusters().text(cell.code()),
                            cell.text & ~StoredCell::codeMask, cell.foreground, cell.background, link ? *link : "");
        }
        result += '\n';
    }
    return result;
}

}  // namespace orvane::testing
