// Keys and settings that a user chooses, from outside and in the view: in force at once, kept, and never half changed.

#include <gmock/gmock.h>

#include "EndToEnd/ViewInSizes.h"
#include "Support/Table.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ViewKeys : public ViewInSizes {
 protected:
    void change(const std::string& line) {
        const auto run = shell("\"$0\" " + line);
        EXPECT_EQ(run->status(), 0) << line << "\n" << run->errors;
    }
    /// Rows: what is asked for, the status, and what the one line says.
    void expectRefusals(std::string_view rows) {
        for (const auto& [line, status, text] : table<3>(rows)) {
            const auto run = shell("\"$0\" " + line);
            EXPECT_EQ(std::to_string(run->status()), status) << line;
            EXPECT_THAT(run->errors, HasSubstr(text)) << line;
            EXPECT_EQ(run->output, "") << line;
        }
    }
    /// Types into a program that shows each key as it got it.
    ::testing::AssertionResult programGets(const std::string& keys, const std::string& shown) {
        window->type("echo be''gun; cat\r");
        if (auto runs = untilShows(*window, "begun"); !runs) return runs;
        window->type(keys);
        const auto done = untilShows(*window, shown);
        window->type("\r\x04");
        window->type("clear\r");
        return done ? untilGone(*window, "begun") : done;
    }
};

INSTANTIATE_TEST_SUITE_P(, ViewKeys, smallestAndLarge(), nameOfSize);

TEST_P(ViewKeys, OwnKeysAreInForceAtOnceOutliveTheHostAndGoWithAReset) {
    openShell();
    change("keys set M-v split-right");
    change("keys set 'C-b g n' next-pane");
    change("keys remove 'Leader |'");
    name("one");
    window->type("\x1bv");
    ASSERT_TRUE(untilPanes(2));
    EXPECT_TRUE(untilFocused("shell"));
    window->command("gn");
    EXPECT_TRUE(untilFocused("one"));
    window->command("|");
    EXPECT_TRUE(untilBottom("That key has no command; C-b ? shows all"));

    const std::string before = orvane({"keys"})->output;
    EXPECT_THAT(before, HasSubstr("M-v (yours)"));
    EXPECT_THAT(before, HasSubstr("Leader is C-b; the preset is tmux"));
    EXPECT_THAT(before, Not(HasSubstr("Leader |")));
    expectRefusals(R"(
        keys set M-v zoom          | 1 | M-v is split-right already
        keys set 'M-v x' zoom      | 1 | M-v x could not be typed: M-v is split-right already
        keys set 'Leader g' zoom   | 1 | Leader g begins Leader g n (next-pane)
        keys set q zoom            | 1 | Programs need q
        keys set C-b zoom          | 1 | C-b begins with the leader
        keys set 'M-w Hyper-x' zoom| 2 | “Hyper-x” is no key
        keys set M-w juggle        | 2 | There is no command “juggle”
        keys set M-w               | 2 | COMMAND is missing.
        keys remove M-w            | 1 | M-w has no command
        keys reset 'Leader z'      | 1 | Leader z is as the preset has it
    )");
    EXPECT_EQ(orvane({"keys"})->output, before) << "a refusal has changed something";

    quit();
    openShell();
    ASSERT_TRUE(untilPanes(2));
    EXPECT_EQ(orvane({"keys"})->output, before);
    window->type("\x1bv");
    ASSERT_TRUE(untilPanes(3));
    change("keys reset M-v");
    EXPECT_TRUE(programGets("\x1bv", "^[v"));
    EXPECT_EQ(panes(), 3);
    window->command("|");
    EXPECT_TRUE(untilBottom("That key has no command")) << "only the one was reset";
    change("keys reset");
    window->command("|");
    EXPECT_TRUE(untilPanes(4));
}

TEST_P(ViewKeys, ThePresetOfAnotherProgramHasKeysWithoutALeaderAndModesThatStay) {
    openShell();
    name("one");
    change("settings view.keys.preset zellij");
    window->type("\x10r");
    ASSERT_TRUE(untilPanes(2));
    window->type("\x10");
    ASSERT_TRUE(untilBottom("C-p was typed"));
    window->type("r");
    ASSERT_TRUE(untilPanes(3));
    window->type("\x10\x1b[D\x1b[D");
    ASSERT_TRUE(untilFocused("one")) << "the second arrow needs no C-p before it";
    window->type("\r");  // leaves the mode
    EXPECT_TRUE(programGets("\x10\x10", "^P"));
    window->type("\x07");
    ASSERT_TRUE(untilBottom("Keys are locked"));
    EXPECT_TRUE(programGets("\x1bn\x10n", "^[n^Pn"));
    EXPECT_EQ(panes(), 3);
    window->type("\x07");
    ASSERT_TRUE(until(*window, [&] { return !window->bottom().contains("Keys are locked"); }));
    window->type("\x1bn");
    EXPECT_TRUE(untilPanes(4));
    window->type("\x10n");
    EXPECT_TRUE(untilPanes(5));
    window->command("z");
    EXPECT_TRUE(untilShows(*window, "[zoomed]")) << "the leader works beside them";
}

TEST_P(ViewKeys, AnEdgeIsMovedOnWithoutTheLeaderUntilAnotherKeyIsTyped) {
    openShell();
    window->command("%");
    ASSERT_TRUE(untilPanes(2));
    ASSERT_TRUE(until(*window, [&] { return window->count("ready> ") == 2; }));
    const auto edgeIsAt = [&](int x) { return window->terminal().getCharacter(x, 3) == "│"; };
    int before = GetParam().cols - 1;
    while (before > 0 && !edgeIsAt(before))
        --before;
    window->command("\x1b[1;5D\x1b[1;5D\x1b[1;5D");
    EXPECT_TRUE(until(*window, [&] { return edgeIsAt(before - 6); }));
    window->command(
        "\x1b[1;5C"
        "echo be''gun; cat\r");
    ASSERT_TRUE(untilShows(*window, "begun"));
    window->type("\x1b[1;5C");
    EXPECT_TRUE(untilShows(*window, "^[[1;5C"));
    EXPECT_TRUE(edgeIsAt(before - 4));
}

TEST_P(ViewKeys, SettingsAreShownChangedAndResetWithAClearWordForEachThatCannotBe) {
    openShell();
    const std::string all = orvane({"settings"})->output;
    for (const char* key : {"language", "view.theme", "view.keys.preset", "view.leader", "view.screenReader",
                            "view.linkOpener", "shell.rail.hidden", "restore.enabled"})
        EXPECT_THAT(all, HasSubstr(key));
    change("settings language DE");
    ASSERT_TRUE(untilBottom("C-b Befehle"));
    EXPECT_THAT(orvane({"settings", "language"})->output, HasSubstr("de\n"));
    change("settings language auto");
    ASSERT_TRUE(untilBottom("C-b commands"));
    change("settings view.leader C-a");
    ASSERT_TRUE(untilBottom("C-a commands"));
    window->type("\x01%");
    ASSERT_TRUE(untilPanes(2));
    const std::string before = orvane({"settings", "--json"})->output;
    expectRefusals(R"(
        settings view.theme pink       | 1 | “pink” is no value of view.theme
        settings view.screenReader 2   | 1 | it takes: on, off
        settings view.leader x         | 1 | Programs need x
        settings view.leader 'C-a C-b' | 1 | it takes: a key as C-a or F12, or auto
        settings view.linkOpener ''    | 1 | it takes: a command, or auto
        settings view.colour           | 2 | There is no setting “view.colour”
        settings --reset               | 2 | --reset takes a setting and no value
        settings language de --reset   | 2 | --reset takes a setting and no value
    )");
    EXPECT_EQ(orvane({"settings", "--json"})->output, before) << "a refusal has changed something";
    change("settings view.leader --reset");
    EXPECT_TRUE(untilBottom("C-b commands"));
}

TEST_P(ViewKeys, TheListOfSettingsTogglesChoosesTypesAndRefuses) {
    openShell();
    window->command("C");
    ASSERT_TRUE(untilShows(*window, "view.theme")) << "the name is what scripts need";
    window->type("restore\r");
    EXPECT_TRUE(untilShows(*window, "off (default")) << "the list stays";
    window->type("\r");
    EXPECT_TRUE(untilGone(*window, "off (default"));
    EXPECT_THAT(orvane({"settings", "restore.enabled"})->output, HasSubstr("on\n"));
    window->type("\x15preset\r");
    ASSERT_TRUE(untilGone(*window, "view.keys.preset"));
    window->type("zel\r");
    EXPECT_TRUE(untilShows(*window, "zellij (default tmux)"));
    window->type("leader\r\x15x\r");
    EXPECT_TRUE(untilShows(*window, "Programs need x"));
    window->type(
        "\x15"
        "C-o\r");
    EXPECT_TRUE(untilShows(*window, "C-o w is go-to already")) << "the preset has it";
    window->type(
        "\x15"
        "C-a\r");
    EXPECT_TRUE(untilShows(*window, "C-a (default auto)"));
    window->type("\x1b");
    ASSERT_TRUE(untilBottom("C-a C-p C-t C-o commands"));
    window->type("\x01?");
    EXPECT_TRUE(untilShows(*window, "the leader is C-a"));
}

}  // namespace
}  // namespace orvane
