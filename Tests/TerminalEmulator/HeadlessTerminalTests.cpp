#include "TerminalEmulator/HeadlessTerminal.h"

#include <gtest/gtest.h>

#include "Platform/LoopThread.h"
#include "Support/RunUntil.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// Keeps what it is told of synchronized output.
class Listener final : public HeadlessTerminal {
 public:
    using HeadlessTerminal::HeadlessTerminal;
    std::vector<bool> held;
    void synchronizedOutputChanged(bool isActive) override { held.push_back(isActive); }
};

TEST(HeadlessTerminalTest, endsASynchronizedOutputThatItsProgramForgets) {
    ManualMainLoop loop;
    Listener headless(loop, loop, {}, {});
    headless.terminal.feed("\x1b[?2026h");
    loop.advance(600ms);
    headless.terminal.feed("\x1b[?2026h");
    loop.advance(900ms);
    EXPECT_TRUE(headless.terminal.modes().synchronizedOutputActive) << "the second one began anew";
    loop.advance(100ms);
    EXPECT_FALSE(headless.terminal.modes().synchronizedOutputActive);
    headless.terminal.feed("\x1b[?2026h\x1b[?2026l");
    loop.advance(2s);
    EXPECT_EQ(headless.held, (std::vector{true, false, true, false}));
}

TEST(HeadlessTerminalTest, mayGoWhileItsTimerRuns) {
    ManualMainLoop loop;
    {
        HeadlessTerminal headless(loop, loop, {}, {});
        headless.terminal.feed("\x1b[?2026h");
    }
    loop.advance(2s);
}

TEST(HeadlessTerminalTest, answersItsProgramFollowsItsFolderAndEndsWithIt) {
    AsioMainLoop loop;
    LoopThread reader;
    std::optional<int> end;
    HeadlessTerminal headless(loop, reader.loop(), {.cols = 30, .rows = 5},
                              [&](std::optional<int> exitCode) { end = exitCode; });
    ASSERT_TRUE(headless.process.startProcess(
        {.executable = "/bin/sh",
         .args = {"-c",
                  "stty raw -echo; printf '\\033]7;file:///tmp\\a\\033[3;4H\\033[6n'; head -c 6 | tr '\\033' E; "
                  "stty cooked; stty size; read -r line; stty size; exit 2"}}));
    ASSERT_TRUE(runUntil(loop, [&] { return headless.terminal.getBufferAsData().contains("5 30"); }));
    EXPECT_TRUE(headless.terminal.getBufferAsData().contains("E[3;4R"));
    EXPECT_EQ(headless.dir, "file:///tmp");
    headless.terminal.resize(40, 6);
    headless.process.send("\n");
    ASSERT_TRUE(runUntil(loop, [&] { return end.has_value(); }));
    EXPECT_EQ(end, 2 << 8);
    EXPECT_TRUE(headless.terminal.getBufferAsData().contains("6 40"));
}

}  // namespace
}  // namespace orvane
