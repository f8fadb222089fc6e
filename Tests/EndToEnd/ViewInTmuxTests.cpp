// The workspace view in tmux, where many people will have it: another terminal than ours, with its own idea of keys,
// colours and sizes. C-a is the leader there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "EndToEnd/TmuxServer.h"
#include "EndToEnd/ViewTest.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class ViewInTmux : public ViewTest {
 protected:
    /// Starts the program in a window; what its terminal is set to before and after goes into files.
    void open(int window, const std::string& words = {}) {
        const std::string name = "stty" + std::to_string(window);
        tmux.enter(window, "clear; stty -g >../" + name + ".before; " + ORVANE_EXECUTABLE + " " + words +
                               "; echo end=$?; stty -g >../" + name + ".after");
    }

    ::testing::AssertionResult until(int window, const std::function<bool(const std::string& screen)>& condition) {
        std::string screen;
        const auto holds = [&] { return condition(screen = tmux.screen(window)); };
        if (loop.runUntil(holds)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the screen shows\n" << screen;
    }
    ::testing::AssertionResult untilShows(int window, const std::string& text) {
        return until(window, [&](const std::string& screen) { return screen.contains(text); }) << "wanted: " << text;
    }
    ::testing::AssertionResult untilGone(int window, const std::string& text) {
        return until(window, [&](const std::string& screen) { return !screen.contains(text); })
               << "not wanted: " << text;
    }

    /// The program has ended with the status, and the window's shell has its terminal as it was.
    void expectGivenBack(int window, int status) {
        ASSERT_TRUE(untilShows(window, "end=" + std::to_string(status)));
        ASSERT_TRUE(untilShows(window, "\nouter>"));
        const std::string name = "stty" + std::to_string(window);
        ASSERT_TRUE(loop.runUntil([&] { return !folder.read(name + ".after").empty(); }));
        EXPECT_EQ(folder.read(name + ".after"), folder.read(name + ".before"));
        std::filesystem::remove(folder.path(name + ".after"));
        EXPECT_EQ(tmux.state(window, "#{alternate_on} #{mouse_any_flag} #{mouse_sgr_flag} #{cursor_flag} #{wrap_flag}"),
                  "0 0 0 1 1\n");
        EXPECT_EQ(tmux.state(window, "#{pane_title}"), title_);
    }

    static std::vector<std::string> rowsOf(const std::string& screen) {
        std::istringstream lines(screen);
        std::vector<std::string> rows;
        for (std::string row; std::getline(lines, row);)
            rows.push_back(row);
        return rows;
    }
    static int rowOf(const std::string& screen, const std::string& text) {
        const auto rows = rowsOf(screen);
        const auto found = std::ranges::find_if(rows, [&](const std::string& row) { return row.contains(text); });
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    }

    TmuxServer tmux{folder.path("tmux.sock"), environment, folder.path("project"), {.cols = 120, .rows = 30}};

 private:
    std::string title_ = tmux.state(0, "#{pane_title}");
};

TEST_F(ViewInTmux, PanesAreSplitZoomedMovedResizedAndClosed) {
    ASSERT_EQ(outputOfBash("git init -q -b main " + shellQuoted(folder.path("project")) + " 2>&1"), "");
    open(0);
    for (const char* text : {"▾ project", "1 Workspace", "─ · shell ─", "ready>", "C-a commands"})
        ASSERT_TRUE(untilShows(0, text));
    tmux.enter(0, "echo le''ft");
    ASSERT_TRUE(untilShows(0, "│left"));
    tmux.press(0, {"C-a", "%"});
    ASSERT_TRUE(until(0, [](const std::string& screen) {
        const std::string title = rowsOf(screen).at(1);
        return title.find("─ · shell ─") != title.rfind("─ · shell ─");
    }));
    ASSERT_TRUE(until(0, [](const std::string& screen) { return rowsOf(screen).at(2).contains("│ready>"); }));
    tmux.enter(0, "echo ri''ght");
    ASSERT_TRUE(untilShows(0, "│right"));
    // The pane that has the keyboard has a green line, and its session the bar in the rail.
    EXPECT_THAT(tmux.coloredScreen(0), HasSubstr("\x1b[38;5;114m"));
    EXPECT_THAT(tmux.coloredScreen(0), HasSubstr("\x1b[7m"));

    tmux.press(0, {"C-a", "z"});
    ASSERT_TRUE(untilShows(0, "[zoomed]"));
    EXPECT_THAT(tmux.screen(0), Not(HasSubstr("│left")));
    tmux.press(0, {"C-a", "z"});
    ASSERT_TRUE(untilShows(0, "│left"));
    tmux.press(0, {"C-a", "m", "Left", "q"});
    // Which of them stands higher depends on what their shells have written.
    ASSERT_TRUE(until(0, [](const std::string& screen) {
        const auto placeInRow = [&](const char* text) {
            const auto at = screen.find(text);
            return at == std::string::npos ? at : at - screen.rfind('\n', at);
        };
        const auto right = placeInRow("│right");
        return right != std::string::npos && right < placeInRow("│left");
    }));

    // Too narrow for the rail; the programs are told of their new sizes.
    tmux.resize(0, {.cols = 60, .rows = 15});
    ASSERT_TRUE(untilGone(0, "▾ project"));
    tmux.enter(0, "stty size");
    ASSERT_TRUE(untilShows(0, "12 30"));
    EXPECT_EQ(rowOf(tmux.screen(0), "C-a commands"), 14);
    tmux.resize(0, {.cols = 160, .rows = 45});
    ASSERT_TRUE(untilShows(0, "▾ project"));
    tmux.enter(0, "stty size");
    ASSERT_TRUE(untilShows(0, "42 64"));
    EXPECT_EQ(rowOf(tmux.screen(0), "C-a commands"), 44);

    tmux.press(0, {"C-a", "x"});
    ASSERT_TRUE(untilShows(0, "Close “shell”?"));
    tmux.press(0, {"y"});
    ASSERT_TRUE(untilGone(0, "right"));
    tmux.enter(0, "stty size");
    EXPECT_TRUE(untilShows(0, "42 129")) << "what is left fills the room";
}

TEST_F(ViewInTmux, AWaitingAgentStandsFirstInTheRailAndIsAnsweredFromAnotherPane) {
    tmux.resize(0, {.cols = 200, .rows = 45});
    open(0);
    ASSERT_TRUE(untilShows(0, "─ · shell ─"));
    const std::string asker = newSession({"claude", "--title", "asker"});
    const std::string first = newSession({"claude", "--title", "first"});
    const std::string second = newSession({"claude", "--title", "second"});
    for (const std::string& working : {first, second})
        orvane({"send", working, "fake:slow"});
    ASSERT_TRUE(untilShows(0, "● first"));
    ASSERT_TRUE(untilShows(0, "● second"));
    orvane({"send", asker, "fake:bash"});
    ASSERT_TRUE(untilShows(0, "1 session needs you"));
    ASSERT_TRUE(untilShows(0, " Do you want to proceed?  1 Yes"));
    const std::string screen = tmux.screen(0);
    EXPECT_EQ(rowOf(screen, "! asker"), 1) << screen;
    EXPECT_THAT(rowsOf(screen).at(rowOf(screen, "─ ! asker")), HasSubstr("[C-a a]"))
        << "the key stays when the options are too long";
    EXPECT_THAT(tmux.coloredScreen(0), HasSubstr("\x1b[38;5;221m!"));
    EXPECT_THAT(tmux.coloredScreen(0), HasSubstr("\x1b[38;5;75m●"));
    EXPECT_THAT(screen, HasSubstr("asker needs you"));

    tmux.press(0, {"C-a", "a"});
    ASSERT_TRUE(untilShows(0, "asker asks"));
    tmux.press(0, {"1"});
    ASSERT_TRUE(untilShows(0, "The command printed its greeting."));
    ASSERT_TRUE(untilGone(0, "asker asks"));
    EXPECT_TRUE(untilGone(0, "needs you")) << "neither the count nor the notice";
}

TEST_F(ViewInTmux, AfterAKillWhatIsInSightComesBackAtOnceAndTheRestOneAfterTheOther) {
    std::filesystem::create_directory(folder.path("other"));
    orvane({"open", "."});
    for (const char* title : {"a1", "a2", "a3"})
        newSession({"shell", "--title", title});
    orvane({"open", "../other"});
    open(0, "view ../other");
    ASSERT_TRUE(untilShows(0, "▾ other"));
    tmux.press(0, {"C-a", "t"});  // of this tab only its session stays
    ASSERT_TRUE(untilShows(0, "─ · shell ─"));
    tmux.press(0, {"C-a", "&"});
    ASSERT_TRUE(untilShows(0, "Close this tab?"));
    tmux.press(0, {"y"});
    ASSERT_TRUE(untilShows(0, "An empty pane."));
    for (const char* title : {"b1", "b2"})
        newSession({"shell", "--project", "other", "--title", title});
    ASSERT_TRUE(untilShows(0, "─ · b2 ─"));
    ASSERT_TRUE(loop.runUntil([&] { return folder.read("data/Orvane/state.json").contains("\"b2\""); }));
    ASSERT_EQ(kill(hostProcess(), SIGKILL), 0);
    expectGivenBack(0, 1);
    EXPECT_THAT(tmux.screen(0), HasSubstr("The host ended."));

    // Another project than the first in the list, so that its precedence is seen.
    open(0);
    ASSERT_TRUE(untilShows(0, "◌ a1"));
    ASSERT_TRUE(untilShows(0, "“a1” comes back in a moment."));
    tmux.press(0, {"C-a", ")"});
    ASSERT_TRUE(untilShows(0, "“b1” comes back in a moment."));
    tmux.press(0, {"Enter"});  // an empty pane would start something
    ASSERT_TRUE(untilShows(0, "─ · b1 ─"));
    ASSERT_TRUE(until(0, [](const std::string& screen) {
        return screen.contains("─ · b2 ─") && screen.contains("· shell") && screen.contains("◌ a3");
    }));
    ASSERT_TRUE(untilGone(0, "◌"));
    std::vector<std::string> started;
    const auto list = Json::parse(orvane({"list", "--json"})->output);
    for (const JsonValue& each : list->as_array())
        started.push_back(JSONObject(each).string("title"));
    EXPECT_THAT(started, ElementsAre("b1", "b2", "shell", "a1", "a2", "a3"));
    tmux.press(0, {"C-a", "("});
    for (const char* title : {"─ · a1 ─", "─ · a2 ─", "─ · a3 ─"})
        EXPECT_TRUE(untilShows(0, title));
}

TEST_F(ViewInTmux, TheNewestWinsAndTheFirstHasItsTerminalBack) {
    tmux.openWindow();
    open(0);
    ASSERT_TRUE(untilShows(0, "─ · shell ─"));
    tmux.enter(0, "echo one$((1+1))");
    ASSERT_TRUE(untilShows(0, "one2"));
    tmux.press(0, {"C-a", "d"});
    ASSERT_TRUE(untilShows(0, "Agents go on"));
    expectGivenBack(0, 0);

    open(0);
    ASSERT_TRUE(untilShows(0, "one2"));
    tmux.resize(1, {.cols = 70, .rows = 20});
    open(1);
    ASSERT_TRUE(untilShows(1, "one2"));
    ASSERT_TRUE(untilShows(0, "opened elsewhere"));
    expectGivenBack(0, 0);
    // Keys of the first window are the shell's again, those of the second the view's.
    tmux.enter(0, "echo three$((2+2))");
    ASSERT_TRUE(untilShows(0, "\nthree4"));
    tmux.enter(1, "echo five$((3+3))");
    ASSERT_TRUE(untilShows(1, "five6"));
    EXPECT_THAT(tmux.screen(1), Not(HasSubstr("three4")));
    tmux.press(1, {"C-a", "d"});
    expectGivenBack(1, 0);
}

}  // namespace
}  // namespace orvane
