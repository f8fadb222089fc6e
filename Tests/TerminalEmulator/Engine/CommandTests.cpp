#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/FileUrl.h"
#include "TerminalEmulator/Engine/FurtherColors.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

using News = std::vector<std::string>;

class Commands : public testing::Test {
 protected:
    RecordingDelegate delegate;
    ManualTimer timer;
    Terminal terminal{delegate, {.cols = 80, .rows = 24, .hostName = "here"}, &timer};

    std::string answerTo(std::string_view bytes) {
        terminal.feed(bytes);
        return delegate.takeSent();
    }
    News newsOf(std::string_view bytes) {
        terminal.feed(bytes);
        return delegate.takeNews();
    }
};

TEST_F(Commands, TitlesAreCleanAndBounded) {
    EXPECT_EQ(newsOf("\033]2;a\xC2\x9B"
                     "b\x7F\xFF\a"),
              News{"title ab\xEF\xBF\xBD"});
    terminal.feed("\033]2;" + std::string(4095, 'x') +
                  "\xC3\xA9"
                  "yyy\a");
    EXPECT_EQ(terminal.terminalTitle(), std::string(4095, 'x'));
    for (int i = 0; i < 100; ++i)
        terminal.feed("\033]2;" + std::to_string(i) + "\a\033[22;2t");
    for (int i = 0; i < 100; ++i)
        terminal.feed("\033[23;2t");
    EXPECT_EQ(terminal.terminalTitle(), "84") << "the oldest of sixteen";
}

TEST_F(Commands, ColoursAreSetAskedForAndReset) {
    EXPECT_EQ(answerTo("\033]4;1;#102030;2;rgb:4/5/6;1;?;2;?\a"),
              "\033]4;1;rgb:1010/2020/3030\a\033]4;2;rgb:4444/5555/6666\a");
    EXPECT_EQ(answerTo("\033]4;256;red;-1;red;x;red;1;nonsense;1;?\033\\"), "\033]4;1;rgb:1010/2020/3030\033\\");
    const TerminalColor standard = Terminal(delegate).ansiColor(1);
    delegate.news.clear();
    EXPECT_EQ(newsOf("\033]104;1;x\a"), News{"colour 1"});
    EXPECT_EQ(terminal.ansiColor(1), standard);
    EXPECT_EQ(newsOf("\033]104\a"), News{"colour all"});

    delegate.colors = {.foreground = TerminalColor::fromBytes(1, 2, 3), .background = {}};
    EXPECT_EQ(answerTo("\033]10;?;?;?\a"),
              "\033]10;rgb:0101/0202/0303\a\033]11;rgb:0000/0000/0000\a\033]12;rgb:0101/0202/0303\a");
    EXPECT_EQ(answerTo("\033]10;red;blue;lime;white\a\033]11;?\033\\"), "\033]11;rgb:0000/0000/ffff\033\\");
    EXPECT_EQ(terminal.cursorColor(), TerminalColor::fromBytes(0, 255, 0));
    terminal.feed("\033]112\a");
    EXPECT_EQ(terminal.cursorColor(), std::nullopt);
}

TEST_F(Commands, FurtherColoursAreKeptByTheirHandlers) {
    TerminalState state(delegate, {}, nullptr);
    state.colors.defaultForeground = TerminalColor::fromBytes(9, 9, 9);
    state.colors.defaultBackground = TerminalColor::fromBytes(8, 8, 8);
    const auto handlers = furtherColorHandlers(state);
    const auto handle = [&](int code, std::string_view payload) {
        std::ranges::find(handlers, code, &std::pair<int, Terminal::OscHandler>::first)
            ->second(payload, StringEnd::bell);
        return delegate.takeSent();
    };
    handle(5, "0;red;7;red");
    EXPECT_EQ(handle(5, "0;?;1;?"), "\033]5;0;rgb:ffff/0000/0000\a\033]5;1;rgb:0909/0909/0909\a");
    handle(17, "lime;blue");
    EXPECT_EQ(handle(17, "?;?;?"),
              "\033]17;rgb:0000/ffff/0000\a\033]18;rgb:0000/0000/ffff\a\033]19;rgb:0808/0808/0808\a");
    handle(117, "");
    handle(105, "0");
    EXPECT_EQ(handle(17, "?") + handle(5, "0;?"), "\033]17;rgb:0909/0909/0909\a\033]5;0;rgb:0909/0909/0909\a");
    state.colors.foreground = TerminalColor::fromBytes(1, 1, 1);
    handle(110, "");
    EXPECT_EQ(state.colors.foreground, std::nullopt);
}

TEST_F(Commands, LinksStayOnTheCellsBetweenTheirEnds) {
    terminal.feed("\033]8;id=1;http://a/;b\033\\x\033]8;;\033\\y\033]8;broken\033\\z");
    const auto link = [&](int col) {
        const std::string* target = terminal.hyperlink(terminal.getLine(0).at(col));
        return target ? *target : "";
    };
    EXPECT_EQ(link(0), "id=1;http://a/;b");
    EXPECT_EQ(link(1), "");
    EXPECT_EQ(link(2), "");
}

TEST_F(Commands, PlacesMustBeFilesOnThisComputer) {
    struct Case {
        const char* url;
        const char* path;
    };
    const Case cases[] = {
        {"file:///tmp/a%20b", "/tmp/a b"},
        {"file://localhost/tmp", "/tmp"},
        {"FILE://HERE/tmp/100%", "/tmp/100%"},
        {"file:/tmp/%C3%A9", "/tmp/\xC3\xA9"},
        {"file://elsewhere/tmp", ""},
        {"file://here", ""},
        {"file:tmp", ""},
        {"http://localhost/tmp", ""},
        {"file:///tmp/%00", ""},
        {"file:///tmp/%0a", ""},
        {"/tmp", ""},
    };
    for (const Case& row : cases)
        EXPECT_EQ(FileUrl::localPath(row.url, "here").value_or(""), row.path) << row.url;
    EXPECT_FALSE(FileUrl::localPath("file:///" + std::string(10'000, 'a'), ""));
    EXPECT_FALSE(FileUrl::localPath("file://elsewhere/tmp", ""));

    EXPECT_EQ(newsOf("\033]7;file://here/a%20b\a"), News{"directory"});
    EXPECT_EQ(newsOf("\033]7;file://elsewhere/c\a"), News{});
    EXPECT_EQ(terminal.hostCurrentDirectory(), "file://here/a%20b");
    terminal.feed("\033]6;file:///x\a\033]6;0;1\a");
    EXPECT_EQ(terminal.hostCurrentDocument(), "file:///x");
}

TEST_F(Commands, TheClipboardIsReadByTrustedProgramsOnly) {
    EXPECT_EQ(newsOf("\033]52;c;SGk\a"), News{"clipboard Hi"});
    EXPECT_EQ(newsOf("\033]52;x;SGk=\a\033]52;c;S\a\033]52;SGk=\a"), News{});
    delegate.clipboard = "Hi";
    EXPECT_EQ(answerTo("\033]52;c;?\a"), "\033]52;c;SGk=\a");
    delegate.isTrusted = false;
    EXPECT_EQ(answerTo("\033]52;c;?\a"), "");
}

TEST_F(Commands, NotificationsProgressAndContent) {
    EXPECT_EQ(newsOf("\033]777;notify;Done;a;b\a"), News{"notify Done|a;b"});
    EXPECT_EQ(newsOf("\033]777;notify;Done\a\033]777;other;a;b\a"), News{});
    EXPECT_EQ(newsOf("\033]9;4;1;42\a\033]9;Hello\a"), News{"progress 42"});
    EXPECT_EQ(newsOf("\033]1337;File=inline=1:AAAA\a\033]1337;SetMark\a"), News{"content SetMark"});
}

TEST_F(Commands, SynchronizedOutputEndsByItselfAndOnce) {
    EXPECT_EQ(newsOf("\033[?2026h\033[?2026h"), News{"held"});
    EXPECT_EQ(timer.starts, 2);
    timer.fire();
    EXPECT_EQ(newsOf("\033[?2026l"), News{"released"});
    EXPECT_EQ(newsOf("\033[?2026h\033[?2026l\033[?2026l"), (News{"held", "released"}));
    EXPECT_FALSE(timer.task);
}

TEST_F(Commands, TheAlternateScreenIsEnteredAndLeft) {
    terminal.feed("main\033[?1049h\033[5;5Halt");
    EXPECT_EQ(terminal.getBufferAsData(), std::string("\n\n\n\n    alt") + std::string(19, '\n'));
    EXPECT_EQ(newsOf("\033[?1049l\033[?1049l"), (News{"buffer", "buffer"})) << "in and out, once each";
    EXPECT_EQ(terminal.getCharacter(0, 0), "m");
    EXPECT_EQ(terminal.getCursorLocation(), (Terminal::CursorLocation{4, 0}));
    terminal.feed("\033[?47h\033[1;1Hleft\033[?47l\033[?47h");
    EXPECT_EQ(terminal.getCharacter(0, 0), "l") << "47 leaves the screen as it is";
    terminal.feed("\033[?1047l\033[?47h");
    EXPECT_EQ(terminal.getCharacter(0, 0), "") << "1047 clears it on the way out";
}

TEST_F(Commands, ModesDoWhatTheySay) {
    EXPECT_EQ(newsOf("\033[?25l\033[?25l\033[?25h"), (News{"cursor hidden", "cursor shown"}));
    EXPECT_EQ(newsOf("\033[?1000h\033[?1000h\033[?1003l"), (News{"mouse", "mouse"}));
    terminal.feed("\033[?1006h\033[?1015l");
    EXPECT_EQ(terminal.modes().mouseProtocol, MouseProtocol::sgr);
    terminal.feed("\033[6 q\033[?12h");
    EXPECT_EQ(terminal.cursorStyle(), CursorStyle::blinkBar);
    terminal.feed("\033[5;10r\033[?6hx");
    EXPECT_EQ(terminal.getCursorLocation(), (Terminal::CursorLocation{1, 4}));
    terminal.feed("\033[?6l\033[?69h\033[5;20s\033[?69l\033[1;1H\033[?69h\033P$qs\033\\");
    EXPECT_EQ(delegate.takeSent(), "\033P1$r1;80s\033\\") << "the margins went with the mode";
}

TEST_F(Commands, ColumnModeNeedsPermissionAndTrust) {
    using Resize = WindowManipulationCommand::ResizeTerminal;
    terminal.feed("text\033[?3h");
    EXPECT_EQ(terminal.cols(), 80);
    EXPECT_TRUE(delegate.commands.empty());
    terminal.feed("\033[?40h\033[?3h");
    EXPECT_EQ(terminal.cols(), 132);
    EXPECT_EQ(delegate.commands.back(), (WindowManipulationCommand{Resize{.cols = 132, .rows = 24}}));
    EXPECT_EQ(terminal.getCharacter(0, 0), "");
    delegate.isTrusted = false;
    terminal.feed("text\033[?95h\033[?3l");
    EXPECT_EQ(terminal.cols(), 132);
    EXPECT_EQ(terminal.getCharacter(0, 0), "t");
    EXPECT_EQ(terminal.getCursorLocation(), (Terminal::CursorLocation{0, 0}));
}

TEST_F(Commands, TheWindowIsAskedAndNothingIsResized) {
    using Command = WindowManipulationCommand;
    const std::pair<const char*, Command> cases[] = {
        {"\033[1t", {Command::Action::deiconifyWindow}},
        {"\033[3;5;6t", {Command::MoveWindowTo{.x = 5, .y = 6}}},
        {"\033[4;100t", {Command::ResizeWindowTo{.width = -1, .height = 100}}},
        {"\033[8;30;100t", {Command::ResizeTerminal{.cols = 100, .rows = 30}}},
        {"\033[8;;100t", {Command::ResizeTerminal{.cols = 100, .rows = 24}}},
        {"\033[8;0t", {Command::ResizeTerminal{.cols = 80, .rows = 24}}},
        {"\033[9;3t", {Command::Action::maximizeWindowHorizontally}},
        {"\033[10;2t", {Command::Action::toggleFullScreen}},
        {"\033[36t", {Command::ResizeToLines{.lines = 36}}},
        {"\033[132$|", {Command::ResizeTerminal{.cols = 132, .rows = 24}}},
    };
    for (const auto& [bytes, command] : cases) {
        delegate.commands.clear();
        terminal.feed(bytes);
        EXPECT_EQ(delegate.commands, std::vector{command}) << bytes;
    }
    delegate.commands.clear();
    terminal.feed("\033[9;7t\033[12t\033[0t\033[99999;1;1;1$|");
    EXPECT_TRUE(delegate.commands.empty());
    EXPECT_EQ(terminal.rows(), 24);
}

}  // namespace
}  // namespace orvane
