#include "OrvaneShell/View/ViewTerminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <utility>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "Platform/FileDescriptor.h"
#include "Platform/ManualMainLoop.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using Haste = ViewTerminal::Haste;

/// A view on one end of a pseudo-terminal, whose other end nobody needs to read: it holds more than a few frames.
class ViewTerminalTest : public testing::Test {
 protected:
    ViewTerminalTest() {
        EXPECT_EQ(grantpt(master.number()), 0);
        EXPECT_EQ(unlockpt(master.number()), 0);
        const winsize size{.ws_row = 40, .ws_col = 100};
        EXPECT_EQ(ioctl(master.number(), TIOCSWINSZ, &size), 0);
        const FileDescriptor slave(ioctl(master.number(), TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC));
        view.emplace(loop, *TerminalDevice::open(slave), OuterTerminal::of("xterm-256color", "", false),
                     ViewTerminal::Callbacks{.onInput = {}, .paint = [this](Canvas& canvas) { paint(canvas); }});
        view->start();
        loop.runPosted();
        loop.advance(1s);
    }

    void paint(Canvas& canvas) {
        ++frames;
        const CellRect all{.cols = canvas.cols(), .rows = isLarge ? canvas.rows() : 1};
        CanvasPen(canvas, all).fill(all, ViewLook::plain, frames % 2 == 0 ? U'x' : U'y');
    }
    int framesAfter(Haste haste) {
        view->requestFrame(haste);
        loop.runPosted();
        return frames;
    }

    ManualMainLoop loop;
    FileDescriptor master{posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)};
    int frames = 0;
    bool isLarge = false;
    std::optional<ViewTerminal> view;
};

TEST_F(ViewTerminalTest, FramesArePacedButTheAnswerToAKeyOvertakes) {
    ASSERT_EQ(frames, 1);
    view->requestFrame();
    EXPECT_EQ(framesAfter(Haste::paced), 2) << "changes of one turn are one frame, and after a pause it comes at once";
    EXPECT_EQ(framesAfter(Haste::paced), 2);
    loop.advance(ViewTerminal::frameInterval);
    EXPECT_EQ(frames, 3);

    loop.advance(1ms);  // the line has taken that one
    EXPECT_EQ(framesAfter(Haste::paced), 3);
    EXPECT_EQ(framesAfter(Haste::prompt), 4) << "right behind another frame";
    loop.advance(1s);
    EXPECT_EQ(frames, 4) << "the one that waited was in it";

    for (int i = 0; i < 1000; ++i) {
        view->requestFrame(Haste::prompt);
        loop.runPosted();
        loop.advance(1ms);
    }
    EXPECT_LE(frames - 4, 60 + ViewTerminal::mostBorrowed + 1) << "whoever types all the time does not get more";
    EXPECT_GE(frames - 4, 55);
}

TEST_F(ViewTerminalTest, EvenAPromptFrameWaitsForALineThatIsBusy) {
    isLarge = true;
    EXPECT_EQ(framesAfter(Haste::prompt), 2);
    EXPECT_EQ(framesAfter(Haste::prompt), 2) << "4000 cells take about 4 ms";
    loop.advance(2ms);
    EXPECT_EQ(frames, 2);
    loop.advance(4ms);
    EXPECT_EQ(frames, 3);
}

}  // namespace
}  // namespace orvane
