#include "TerminalEmulator/HeadlessTerminal.h"

#include <gtest/gtest.h>

#include "Platform/ManualMainLoop.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(HeadlessTerminalTest, endsASynchronizedOutputThatItsProgramForgets) {
    ManualMainLoop loop;
    RecordingDelegate delegate;
    HeadlessTerminal headless(loop, delegate);
    headless.terminal.feed("\x1b[?2026h");
    loop.advance(600ms);
    headless.terminal.feed("\x1b[?2026h");
    loop.advance(900ms);
    EXPECT_TRUE(headless.terminal.modes().synchronizedOutputActive) << "the second one began anew";
    loop.advance(100ms);
    EXPECT_FALSE(headless.terminal.modes().synchronizedOutputActive);
    headless.terminal.feed("\x1b[?2026h\x1b[?2026l");
    loop.advance(2s);
    EXPECT_EQ(delegate.news, (std::vector<std::string>{"held", "released", "held", "released"}));
}

TEST(HeadlessTerminalTest, mayGoWhileItsTimerRuns) {
    ManualMainLoop loop;
    RecordingDelegate delegate;
    {
        HeadlessTerminal headless(loop, delegate);
        headless.terminal.feed("\x1b[?2026h");
    }
    loop.advance(2s);
    EXPECT_EQ(delegate.news, std::vector<std::string>{"held"});
}

}  // namespace
}  // namespace orvane
