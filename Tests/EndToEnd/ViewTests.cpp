// The workspace view as its users meet it: the program on a terminal of our own, judged by what is on its screen.

#include <gmock/gmock.h>

#include <algorithm>

#include "EndToEnd/ViewTest.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// A terminal in which somebody has typed a command.
class Window {
 public:
    Window(MainLoop& loop, Environment environment, const std::string& folder, std::vector<std::string> words,
           int cols = 120, int rows = 30)
        : terminal_(loop, loop, {.cols = cols, .rows = rows}, [this](std::optional<int> code) { end = code; }) {
        environment["TERM"] = "xterm-256color";
        environment.erase("TMUX");
        EXPECT_TRUE(terminal_.process
                        .startProcess({.executable = ORVANE_EXECUTABLE,
                                       .args = std::move(words),
                                       .environment = list(environment),
                                       .currentDirectory = folder})
                        .has_value());
    }

    void type(std::string_view bytes) { terminal_.send(bytes); }
    void command(std::string_view keys) { type("\x02" + std::string(keys)); }
    void resize(int cols, int rows) { terminal_.terminal.resize(cols, rows); }
    std::string row(int y) const {
        return terminal_.terminal.getLine(y).translateToString(terminal_.terminal.clusters());
    }
    std::string text() const {
        std::string all;
        for (int y = 0; y < terminal_.terminal.rows(); ++y)
            all += row(y) + "\n";
        return all;
    }
    bool shows(std::string_view wanted) const { return text().contains(wanted); }
    const Terminal& terminal() const { return terminal_.terminal; }
    pid_t process() const { return terminal_.process.shellPid(); }

    std::optional<int> end;

 private:
    static std::vector<std::string> list(const Environment& environment) {
        std::vector<std::string> pairs;
        for (const auto& [name, value] : environment)
            pairs.push_back(name + "=" + value);
        return pairs;
    }

    HeadlessTerminal terminal_;
};

class ViewInTerminal : public ViewTest {
 protected:
    std::unique_ptr<Window> open(std::vector<std::string> words = {}, int cols = 120, int rows = 30) {
        return std::make_unique<Window>(loop, environment, folder.path("project"), std::move(words), cols, rows);
    }

    ::testing::AssertionResult until(const Window& window, const std::function<bool()>& condition) {
        if (loop.runUntil(condition)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the screen shows\n" << window.text();
    }
    ::testing::AssertionResult untilShows(const Window& window, const std::string& text) {
        return until(window, [&] { return window.shows(text); }) << "wanted: " << text;
    }
    ::testing::AssertionResult untilGone(const Window& window, const std::string& text) {
        return until(window, [&] { return !window.shows(text); }) << "not wanted: " << text;
    }
};

TEST_F(ViewInTerminal, TheFirstStartShowsTheFolderWithAShellAndDetachingLeavesItRunning) {
    auto window = open();
    ASSERT_TRUE(untilShows(*window, "▾ project"));
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    window->type("echo one$((1+1))\r");
    ASSERT_TRUE(untilShows(*window, "one2"));
    window->command("d");
    ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
    EXPECT_EQ(*window->end, 0);
    EXPECT_TRUE(window->shows("Agents go on"));
    // The terminal is as it was: normal screen, wrapping, no mouse.
    EXPECT_FALSE(window->terminal().isAlternateBufferActive());
    EXPECT_TRUE(window->terminal().modes().wraparound);
    EXPECT_FALSE(window->terminal().modes().bracketedPasteMode);
    EXPECT_EQ(window->terminal().modes().mouseMode, MouseMode::off);
    EXPECT_FALSE(window->terminal().modes().cursorHidden);

    window = open();
    ASSERT_TRUE(untilShows(*window, "one2"));
    // The newest wins, wherever it is; and it has another size.
    auto other = open({"view"}, 70, 20);
    ASSERT_TRUE(untilShows(*other, "one2"));
    ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
    EXPECT_TRUE(window->shows("opened elsewhere"));
    EXPECT_FALSE(other->shows("▾ project")) << "a narrow terminal begins without the side rail";
    other->command("b");
    EXPECT_TRUE(untilShows(*other, "▾ project"));
}

TEST_F(ViewInTerminal, PanesAreSplitZoomedMovedResizedAndClosed) {
    auto window = open();
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    window->type("echo le''ft\r");
    ASSERT_TRUE(untilShows(*window, "left"));
    window->command("%");
    ASSERT_TRUE(until(*window, [&] {
        return window->row(5).contains("│") && window->row(1).find("─ · shell") != window->row(1).rfind("─ · shell");
    }));
    window->type("echo ri''ght\r");
    ASSERT_TRUE(untilShows(*window, "right"));
    EXPECT_TRUE(window->shows("left"));
    window->command("z");
    ASSERT_TRUE(untilShows(*window, "[zoomed]"));
    EXPECT_FALSE(window->shows("left"));
    window->command("z");
    ASSERT_TRUE(untilShows(*window, "left"));

    // Below the other one: the arrow goes to the left neighbour, whose lower half it takes then.
    const auto placeOf = [&](const std::string& text) {
        for (int y = 0; y < window->terminal().rows(); ++y) {
            if (const auto x = window->row(y).find(text); x != std::string::npos)
                return std::pair(static_cast<int>(x), y);
        }
        return std::pair(-1, -1);
    };
    EXPECT_LT(placeOf("left").first, placeOf("right").first);
    window->command("m");
    window->type("\x1b[Dq");
    EXPECT_TRUE(
        until(*window, [&] { return placeOf("right").first < placeOf("left").first && placeOf("right").first >= 0; }));

    window->command("x");
    ASSERT_TRUE(untilShows(*window, "Close “shell”?"));
    window->type("y");
    ASSERT_TRUE(untilGone(*window, "right"));
    EXPECT_TRUE(window->shows("left"));
    // It fills the room again, also after a change of size; a dialog in between does no harm.
    window->command("?");
    ASSERT_TRUE(untilShows(*window, "Keys behind C-b"));
    window->resize(60, 15);
    window->type("q");
    ASSERT_TRUE(until(*window, [&] { return window->row(14).contains("C-b commands"); }));
    window->type("stty size\r");
    EXPECT_TRUE(untilShows(*window, "12 60"));
}

TEST_F(ViewInTerminal, AWaitingAgentIsSeenFromAnotherPaneAndAnsweredThere) {
    auto window = open();
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    const std::string waiting = newSession({"claude", "--title", "asker"});
    const std::string working = newSession({"claude", "--title", "worker"});
    orvane({"send", working, "fake:slow"});
    ASSERT_TRUE(untilShows(*window, "● worker"));
    orvane({"send", waiting, "fake:bash"});
    ASSERT_TRUE(untilShows(*window, "! asker"));
    ASSERT_TRUE(untilShows(*window, "1 session needs you"));
    // Before the others in the rail, and its pane offers the options.
    const auto rowOf = [&](const std::string& text) {
        for (int y = 0; y < window->terminal().rows(); ++y)
            if (window->row(y).substr(0, 28).contains(text)) return y;
        return -1;
    };
    EXPECT_LT(rowOf("asker"), rowOf("shell"));
    EXPECT_TRUE(untilShows(*window, "[C-b a]"));
    window->command("a");
    ASSERT_TRUE(untilShows(*window, "asker asks"));
    window->type("1");
    ASSERT_TRUE(untilGone(*window, "session needs you"));
    EXPECT_TRUE(untilGone(*window, "asker asks"));
}

TEST_F(ViewInTerminal, TheTerminalIsGivenBackWhenTheHostDiesAndTheNextHostBringsEverythingBack) {
    auto window = open();
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    window->command("\"");
    ASSERT_TRUE(until(
        *window, [&] { return orvane({"list"})->output.contains("shell") && window->row(15).contains("─ · shell"); }));
    kill(hostProcess(), SIGKILL);
    ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
    EXPECT_NE(*window->end, 0);
    EXPECT_FALSE(window->terminal().isAlternateBufferActive());
    EXPECT_EQ(window->terminal().modes().mouseMode, MouseMode::off);

    window = open();
    ASSERT_TRUE(untilShows(*window, "▾ project"));
    // Both panes are there at once, and their shells after a while.
    ASSERT_TRUE(
        until(*window, [&] { return window->row(1).contains("─ · shell") && window->row(15).contains("─ · shell"); }));
    const std::string socket = seen().record.socketPath;
    window->command("Q");
    ASSERT_TRUE(untilShows(*window, "Quit Orvane?"));
    window->type("y");
    ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
    EXPECT_EQ(*window->end, 0);
    EXPECT_TRUE(loop.runUntil([&] { return seen().state != InstanceLock::State::running; }));
    EXPECT_FALSE(std::filesystem::exists(socket)) << "the host has died instead of ending";
}

}  // namespace
}  // namespace orvane
