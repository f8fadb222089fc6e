#include "OrvaneShell/View/ViewModes.h"

#include <gtest/gtest.h>

#include <string>

#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

class Answers final : public TerminalDelegate {
 public:
    void send(std::string_view bytes) override { sent += bytes; }
    std::string sent;
};

TEST(ViewModesTest, WhatIsEnteredIsLeftWhereverItWasCut) {
    const std::string frame = viewEnterText(MouseReports::wanted) +
                              "\x1b[>1u\x1b[>4;2m\x1b[?1003h\x1b[?2026h\x1b[2;8r\x1b[5 "
                              "q\x1b[3;4H\x1b[1;38;2;1;2;3mframe\x1b]8;;http://x/a\x1b\\";
    for (std::size_t cut = 0; cut <= frame.size(); ++cut) {
        Answers answers;
        Terminal terminal(answers);
        terminal.feed("before\r\n$ ");
        terminal.feed(std::string_view(frame).substr(0, cut));
        terminal.feed(viewLeaveText());
        terminal.feed("after");
        SCOPED_TRACE(cut);
        EXPECT_EQ(terminal.modes(), TerminalModes{.cursorBlink = true});  // as the cursor is by default
        EXPECT_EQ(terminal.keyboardMode(), KeyboardModeState{});
        EXPECT_FALSE(terminal.isAlternateBufferActive());
        EXPECT_EQ(terminal.cursorStyle(), TerminalOptions{}.cursorStyle);
        EXPECT_EQ(terminal.buffer().scrollBottom(), terminal.rows() - 1);
        const CharData last =
            terminal.getCharData(terminal.getCursorLocation().x - 1, terminal.getCursorLocation().y).value();
        EXPECT_TRUE(last.attribute == Attribute{} && last.payload.target() == nullptr);
        if (cut < std::string_view("\x1b[?1049h").size()) continue;  // it had no screen of its own yet
        EXPECT_EQ(terminal.getBufferAsData().substr(0, 14), "before\n$ after");
    }
}

TEST(ViewModesTest, TheQuestionsAreAnsweredWithTheAttributesLast) {
    Answers answers;
    Terminal terminal(answers);
    terminal.feed(viewEnterText(MouseReports::wanted));
    EXPECT_TRUE(answers.sent.starts_with("\x1b]11;rgb:1414/1616/1a1a\x1b\\\x1b[?0u\x1b[?2026;2$y\x1b[?"))
        << answers.sent;
    EXPECT_TRUE(answers.sent.ends_with('c')) << answers.sent;
    EXPECT_TRUE(terminal.isAlternateBufferActive() && terminal.modes().cursorHidden && !terminal.modes().wraparound);
    EXPECT_EQ(terminal.modes().mouseMode, MouseMode::buttonEventTracking);
    EXPECT_EQ(terminal.modes().mouseProtocol, MouseProtocol::sgr);
}

}  // namespace
}  // namespace orvane
