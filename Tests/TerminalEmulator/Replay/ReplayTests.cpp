#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#include "TerminalEmulator/Replay/CapturedScreen.h"
#include "TerminalEmulator/Terminal.h"

// What programs wrote, recorded, and the screens that tmux made of the same bytes.

namespace orvane {

namespace {

constexpr int cols = 80;
constexpr int rows = 25;

class SilentHost final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A moment of a recording: its first bytes and the screen that they make.
struct Moment {
    std::string name;  ///< "vim-80x25.1534"
    std::string bytes;
    CapturedScreen screen;
};

Moment momentOf(const std::filesystem::path& capture) {
    const std::string name = capture.stem().stem();
    const std::size_t dot = name.find('.');
    std::string bytes = contentOf(capture.parent_path() / (name.substr(0, dot) + ".raw"));
    if (dot != std::string::npos) bytes.resize(std::stoul(name.substr(dot + 1)));
    return {.name = name, .bytes = std::move(bytes), .screen = CapturedScreen::parse(contentOf(capture))};
}

std::vector<Moment> allMoments() {
    std::vector<Moment> moments;
    for (const auto& entry : std::filesystem::directory_iterator(ORVANE_SOURCE_DIR "/Tests/Recordings")) {
        if (entry.path().string().ends_with(".tmux.txt")) moments.push_back(momentOf(entry.path()));
    }
    return moments;
}

ShownCell shownAt(const Terminal& terminal, int row, int col) {
    const CharData cell = terminal.getLine(row).charData(col);
    ShownCell shown{.foreground = cell.attribute.fg, .background = cell.attribute.bg, .style = cell.attribute.style};
    if (cell.width != 0) terminal.clusters().appendText(cell.code == 0 ? ' ' : cell.code, shown.text);
    return shown;
}

/// tmux's capture of a row ends at the last cell that was written. Behind it there may be cells that were erased in
/// some colour; nothing but a background is possible there.
ShownCell expectedAt(const std::vector<ShownCell>& row, std::size_t col, const ShownCell& shown) {
    return col < row.size() ? row[col] : ShownCell{.text = " ", .background = shown.background};
}

/// The rows that differ, each with its first cell that does.
std::string differences(const Terminal& terminal, const CapturedScreen& screen) {
    std::string text;
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            const ShownCell shown = shownAt(terminal, row, col);
            const auto expected =
                expectedAt(screen.rows[static_cast<std::size_t>(row)], static_cast<std::size_t>(col), shown);
            if (shown == expected) continue;
            text += "row " + std::to_string(row) + ", column " + std::to_string(col) + ": " + described(shown) +
                    ", in tmux " + described(expected) + '\n';
            break;
        }
    }
    return text;
}

void expectShown(const Terminal& terminal, const CapturedScreen& screen) {
    ASSERT_EQ(screen.rows.size(), static_cast<std::size_t>(rows));
    EXPECT_EQ(differences(terminal, screen), "");
    EXPECT_EQ(terminal.getCursorLocation(), (Terminal::CursorLocation{.x = screen.cursorX, .y = screen.cursorY}));
    EXPECT_EQ(terminal.isAlternateBufferActive(), screen.isAlternate);
}

/// Feeds pieces of 1 to `longest` bytes; with 0 all at once.
void feedInPieces(Terminal& terminal, std::string_view bytes, std::size_t longest) {
    if (longest == 0) return terminal.feed(bytes);
    std::mt19937 random(static_cast<unsigned>(longest));
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, 1 + random() % longest);
        terminal.feed(piece);
        bytes.remove_prefix(piece.size());
    }
}

}  // namespace

TEST(ReplayTests, ScreensOfRealProgramsAreThoseOfTmuxHoweverTheirBytesAreCut) {
    const std::vector<Moment> moments = allMoments();
    ASSERT_FALSE(moments.empty());
    for (const Moment& moment : moments) {
        for (const std::size_t longest : {0U, 1U, 5U, 300U}) {
            SCOPED_TRACE(moment.name + " in pieces of up to " + std::to_string(longest));
            SilentHost host;
            Terminal terminal(host, {.cols = cols, .rows = rows});
            feedInPieces(terminal, moment.bytes, longest);
            expectShown(terminal, moment.screen);
        }
    }
}

}  // namespace orvane
