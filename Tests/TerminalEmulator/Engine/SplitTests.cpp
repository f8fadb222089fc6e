#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "TerminalEmulator/Engine/RandomStream.h"
#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using testing::TestTerminal;

std::string fedInPieces(const std::string& bytes, const std::function<std::size_t()>& pieceSize) {
    TestTerminal screen(20, 6);
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t size = pieceSize();
        screen.feed(std::string_view(bytes).substr(at, size));
        at += size;
    }
    return screen.snapshot();
}

TEST(SplitTest, anyCutOfAStreamGivesTheSameScreenModesAndAnswers) {
    std::mt19937 random(20311);
    for (int round = 0; round < 150; ++round) {
        const std::string bytes = testing::randomStream(random, 25);
        const std::string whole = fedInPieces(bytes, [&] { return bytes.size(); });
        ASSERT_EQ(fedInPieces(bytes, [] { return 1; }), whole) << ::testing::PrintToString(bytes);
        for (std::size_t cut = 1; cut < bytes.size(); ++cut) {
            const std::string cutOnce = fedInPieces(
                bytes, [&, first = true]() mutable { return std::exchange(first, false) ? cut : bytes.size(); });
            ASSERT_EQ(cutOnce, whole) << cut << " " << ::testing::PrintToString(bytes);
        }
    }
}

TEST(SplitTest, aRecordingInPiecesOfAnySizeGivesTheSameScreen) {
    std::mt19937 random(7);
    for (const auto& entry : std::filesystem::directory_iterator(ORVANE_SOURCE_DIR "/Tests/Recordings")) {
        if (entry.path().extension() != ".raw") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        const std::string whole = fedInPieces(bytes, [&] { return bytes.size(); });
        ASSERT_FALSE(bytes.empty());
        EXPECT_EQ(fedInPieces(bytes, [] { return 1; }), whole) << entry.path();
        EXPECT_EQ(fedInPieces(bytes, [&] { return 1 + random() % 50; }), whole) << entry.path();
    }
}

/// What the program wrote, joined into lines; the blank ones at the end may come and go.
std::string logicalText(const Terminal& terminal) {
    std::string text = terminal.getBufferAsData(Terminal::BufferKind::normal);
    text.resize(text.find_last_not_of(" \n") + 1);
    return text;
}

TEST(ResizeTest, aStormOfSizesOnAFullHistoryLosesWholeOldestRowsOnly) {
    std::mt19937 random(99);
    TestTerminal screen(80, 24, 400);
    for (int line = 0; line < 900; ++line) {
        screen.feed("\r\n" + std::to_string(line) + ":");
        for (std::size_t words = random() % 40; words > 0; --words)
            screen.feed(random() % 5 == 0 ? " 漢字" : " word");
    }
    screen.feed("\r\n$ ");
    const std::string before = logicalText(screen.terminal);
    for (int round = 0; round < 200; ++round) {
        screen.terminal.resize(static_cast<int>(2 + random() % 200), static_cast<int>(3 + random() % 60));
        const std::string now = logicalText(screen.terminal);
        ASSERT_TRUE(now.ends_with("$")) << round;
        ASSERT_TRUE(before.ends_with(now)) << round << now;
    }
    screen.terminal.resize(80, 24);
    EXPECT_GT(logicalText(screen.terminal).size(), 200);
}

TEST(ResizeTest, clampsAndCutsTheAlternateScreen) {
    TestTerminal screen;
    screen.terminal.resize(0, -5);
    EXPECT_EQ(screen.terminal.cols(), 2);
    EXPECT_EQ(screen.terminal.rows(), 1);
    screen.terminal.resize(10, 4);
    screen.feed("\x1b[?1049h0123456789ab");
    screen.terminal.resize(5, 4);
    EXPECT_EQ(screen.screen(), "01234|ab|");
}

}  // namespace
}  // namespace orvane
