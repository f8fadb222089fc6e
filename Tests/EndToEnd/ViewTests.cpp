// The workspace view as its users meet it: the program on a terminal of our own, judged by what is on its screen.

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "EndToEnd/ViewInTerminal.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

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
    ASSERT_TRUE(untilShows(*window, "All keys; the leader is C-b"));
    window->resize(60, 15);
    window->type("q");
    ASSERT_TRUE(until(*window, [&] { return window->row(14).contains("C-b commands"); }));
    window->type("stty size\r");
    EXPECT_TRUE(untilShows(*window, "12 60"));
}

TEST_F(ViewInTerminal, EverythingIsFoundByTyping) {
    auto window = open({}, 100, 30);
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    window->command(":");
    ASSERT_TRUE(untilShows(*window, "Find anything"));
    ASSERT_TRUE(untilShows(*window, "C-b %"));
    window->type("nothing like this");
    ASSERT_TRUE(untilGone(*window, "C-b %"));
    window->type("\x15spl bot");
    ASSERT_TRUE(untilShows(*window, "C-b \""));
    window->type("\r");
    ASSERT_TRUE(untilGone(*window, "Find anything"));
    window->command(":");
    window->type("newtab\r");
    ASSERT_TRUE(untilShows(*window, "2 Workspace"));
    window->command(":");
    window->type("tab works");
    ASSERT_TRUE(untilShows(*window, "tab: Workspace"));
    window->type("\r");
    ASSERT_TRUE(untilGone(*window, "Find anything"));
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

TEST_F(ViewInTerminal, APastConversationIsFoundLookedIntoAndTakenUpAgainAndItsTraceIsShown) {
    const std::string project = folder.path("project");
    std::string slug = project;
    std::ranges::replace_if(slug, [](unsigned char c) { return std::isalnum(c) == 0; }, '-');
    const std::string transcript = folder.path(".claude/projects/" + slug + "/aaaa1111.jsonl");
    std::filesystem::create_directories(std::filesystem::path(transcript).parent_path());
    const auto append = [](const std::string& path, const std::string& lines) {
        std::ofstream(path, std::ios::app) << lines;
    };
    const auto record = [&](const std::string& type, const std::string& message) {
        return R"({"type":")" + type + R"(","uuid":")" + Uuid::random().lowerText() +
               R"(","sessionId":"aaaa1111","cwd":")" + project + R"(","timestamp":"2026-01-02T03:04:05Z","message":)" +
               message + "}\n";
    };
    const auto call = [&](const std::string& id, const std::string& name, const std::string& input) {
        return record("assistant", R"({"model":"claude-opus-5-5","content":[{"type":"tool_use","id":")" + id +
                                       R"(","name":")" + name + R"(","input":)" + input +
                                       R"(}],"usage":{"input_tokens":90000,"output_tokens":10}})");
    };
    const auto result = [&](const std::string& id) {
        return record("user", R"({"content":[{"type":"tool_result","tool_use_id":")" + id + R"(","content":"ok"}]})");
    };
    append(transcript, record("user", R"({"content":"Mend the login"})") +
                           call("t1", "Edit", R"({"file_path":")" + project + R"(/src/login.c"})") + result("t1") +
                           call("t2", "Bash", R"({"command":"curl https://example.org"})") + result("t2") +
                           record("assistant", R"({"content":[{"type":"text","text":"The form is mended."}]})"));
    append(folder.path(".claude/projects/" + slug + "/bbbb2222.jsonl"),
           record("user", R"({"content":"Write the tests"})"));

    auto window = open({}, 170, 40);
    ASSERT_TRUE(untilShows(*window, "─ · shell"));
    window->command("H");
    ASSERT_TRUE(untilShows(*window, "2 of "));
    ASSERT_TRUE(untilShows(*window, "Write the tests"));
    window->type("login");
    ASSERT_TRUE(untilShows(*window, "1 of 1"));
    EXPECT_TRUE(untilGone(*window, "Write the tests"));
    EXPECT_TRUE(untilShows(*window, "● The form is mended."));
    EXPECT_TRUE(window->shows("▸ Edit, Bash"));
    window->type("\r");
    ASSERT_TRUE(untilGone(*window, "Past conversations"));
    ASSERT_TRUE(untilShows(*window, "Claude Code v"));
    ASSERT_TRUE(untilShows(*window, "Opus 5.5 ▕"));
    const auto listed = Json::parse(orvane({"list", "--json"})->output);
    ASSERT_TRUE(listed && listed->is_array() && listed->get_array().size() == 2);
    const JSONObject session(listed->get_array().back());
    EXPECT_EQ(session.string("transcript"), transcript);
    EXPECT_EQ(session.object("context").integer("used"), 90000);
    const std::string status = orvane({"status", session.string("id")})->output;
    EXPECT_THAT(status, ::testing::HasSubstr("context: 90000 of "));
    EXPECT_THAT(status, ::testing::HasSubstr(transcript));

    window->command("T");
    ASSERT_TRUE(untilShows(*window, "± src/login.c"));
    EXPECT_TRUE(window->shows("Sensitive (1)"));
    EXPECT_TRUE(window->shows("! Bash curl https://example.org"));
    append(transcript, call("t3", "Bash", R"({"command":"npm test"})"));
    EXPECT_TRUE(untilShows(*window, "▶ Bash npm test"));
    window->command("T");
    EXPECT_TRUE(untilGone(*window, "Sensitive"));

    // Again it is only gone to.
    window->command("t");
    ASSERT_TRUE(untilGone(*window, "Claude Code v"));
    window->command("H");
    window->type("login\r");
    ASSERT_TRUE(untilShows(*window, "Claude Code v"));
    const auto again = Json::parse(orvane({"list", "--json"})->output);
    EXPECT_EQ(std::ranges::count(again->get_array(), "claude",
                                 [](const JsonValue& row) { return JSONObject(row).string("kind"); }),
              1);
}

}  // namespace
}  // namespace orvane
