// The copy mode as its users meet it, by keyboard and by mouse, in the smallest window and in a large one.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "EndToEnd/ViewInSizes.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using Style = Attribute::CharacterStyle;

class CopyMode : public ViewInSizes {
 protected:
    /// A window whose shell has run a line; what it prints must have this in it.
    void openWith(const std::string& line, const std::string& printed) {
        openShell();
        run(line, printed);
    }
    void run(const std::string& line, const std::string& printed) {
        window->type(line + "\r");
        ASSERT_TRUE(untilShows(*window, printed));
    }
    void enter() {
        window->command("[");
        ASSERT_TRUE(untilBottom("v select"));
    }
    void leave() {
        window->type("q");
        ASSERT_TRUE(untilBottom("C-b commands"));
    }
    /// Types keys that copy, and waits for it.
    ::testing::AssertionResult copies(const std::string& keys, const std::string& text) {
        window->type(keys);
        return until(*window, [&] { return window->clipboard() == text; })
               << "wanted: " << text << "\ncopied: " << window->clipboard();
    }
    /// What stands from the cursor on.
    std::string atCursor() const {
        const auto [x, y] = window->terminal().getCursorLocation();
        return window->terminal().getLine(y).translateToString(window->terminal().clusters(), {.startCol = x});
    }
    ::testing::AssertionResult untilAtCursor(const std::string& text) {
        return until(*window, [&] { return atCursor().starts_with(text); }) << "wanted: " << text;
    }
    std::string paneRow(int y) const {
        return window->terminal().getLine(y).translateToString(window->terminal().clusters(), {.startCol = left()});
    }
};

INSTANTIATE_TEST_SUITE_P(, CopyMode, smallestAndLarge(), nameOfSize);

TEST_P(CopyMode, SelectsOverWrappedRowsByCharactersRowsAndBlocks) {
    openWith(R"(printf 'be''gin-%0250d-fin\n  one\n  two\n  th''ree\n' 7)", "three");
    const std::string line = "begin-" + std::string(249, '0') + "7-fin";
    enter();
    EXPECT_TRUE(copies("/begin-0\rv$y", line));
    EXPECT_TRUE(untilBottom("260 characters copied"));
    enter();
    EXPECT_TRUE(copies("/begin-0\rjVy", line)) << "rows are whole lines, and Esc is not needed to leave";
    enter();
    EXPECT_TRUE(copies("/  one\r^V2j\r", "  one\n  two\n  three"));
    enter();
    EXPECT_TRUE(copies("/one\r\x16jj$y", "one\ntwo\nthree"));
    enter();
    // Both ends are moved, and Esc takes the selection back before it leaves.
    EXPECT_TRUE(copies("/two\rvjohhy", "  two\n  t"));
    enter();
    window->type("/two\rve\x1b[D");
    ASSERT_TRUE(untilBottom("o other end"));
    window->type("\x1b");
    ASSERT_TRUE(untilBottom("v select"));
    // Keys without a meaning change nothing.
    window->type("ZQx=&\x1b[21~");
    EXPECT_TRUE(untilAtCursor("wo"));
    window->type("\x1b");
    EXPECT_TRUE(untilBottom("C-b commands"));
    EXPECT_THAT(window->text(), ::testing::Not(HasSubstr("ZQx")));
}

TEST_P(CopyMode, WhatIsReadStaysWhileTheProgramWritesOn) {
    openWith("until [ -e go ]; do sleep 0.02; done; seq 1001 1200; echo do''ne; touch finished", "touch finished");
    enter();
    const std::string before = paneRow(2);
    const std::string title = window->row(1);
    folder.write("project/go", "");
    ASSERT_TRUE(until(*window, [&] { return std::filesystem::exists(folder.path("project/finished")); }));
    ASSERT_TRUE(until(*window, [&] { return window->row(1).contains(" -1"); })) << "how far it is from the newest";
    EXPECT_EQ(paneRow(2), before);
    ASSERT_TRUE(until(*window, [&] {
        window->type("G");
        return atCursor().starts_with("ready> ");
    }));
    window->type("\x1b[5~");  // PageUp
    ASSERT_TRUE(untilGone(*window, "1200"));
    leave();
    EXPECT_TRUE(untilShows(*window, "done"));
    EXPECT_TRUE(until(*window, [&] { return window->row(1) == title; })) << "the title tells no place any more";
}

TEST_P(CopyMode, SearchesWhileATermIsTypedInEachKind) {
    openWith(R"(printf 'Al''pha beta\nal''phabet\nAL''PHA (x)\nal''.pha\n')", "al.pha");
    enter();
    window->type("/alpha");
    EXPECT_TRUE(untilBottom("3/3"));
    // The bar of the search row has the cursor; hits are told by their looks.
    const auto looks = [&](const std::string& text) {
        for (int y = 0; y < GetParam().rows - 1; ++y)
            if (paneRow(y).starts_with(text)) return window->terminal().getCharData(left(), y)->attribute.style;
        return Style::none;
    };
    EXPECT_EQ(looks("ALPHA") & (Style::inverse | Style::underline), Style::inverse | Style::underline);
    EXPECT_EQ(looks("alphabet") & (Style::inverse | Style::underline), Style::underline);
    window->type(
        "\x1b"
        "c");
    ASSERT_TRUE(untilBottom("[Aa]"));
    EXPECT_TRUE(untilBottom("1/1"));
    window->type(
        "\x1b"
        "c\x1b"
        "w");
    ASSERT_TRUE(untilBottom("[word]"));
    EXPECT_TRUE(untilBottom("2/2"));
    window->type(
        "\x1b"
        "w\x1b"
        "r\x15"
        "al.pha");
    ASSERT_TRUE(untilBottom("[.*]"));
    EXPECT_TRUE(untilBottom("1/1"));
    window->type("\x15(al");
    EXPECT_TRUE(untilBottom("No valid pattern: "));
    window->type("\r");
    EXPECT_TRUE(untilBottom("No valid pattern: ")) << "it is still typed";
    window->type("\x1b");
    ASSERT_TRUE(untilBottom("v select"));
    EXPECT_TRUE(untilAtCursor("    ")) << "back at the prompt, behind it";
    window->type(
        "?ALPHA\x1b"
        "r\r");
    EXPECT_TRUE(untilBottom("/3"));
    window->type("nnnN/\x1b[A");  // the last term again
    EXPECT_TRUE(untilBottom("ALPHA"));
    window->type("\rgg0");
    window->type("/phabet\rb*");
    EXPECT_TRUE(untilBottom("1/1")) << "as a whole word";
    window->type("q");
}

TEST_P(CopyMode, GoesFromPromptToPromptWhereTheyAreMarked) {
    openWith("echo g''o", "go");
    enter();
    window->type("[");
    ASSERT_TRUE(untilBottom("marks no prompts"));
    leave();
    run(R"(printf '\033]133;A\007fir''st> \n'; seq 100; printf '\033]133;A\007sec''ond> \n'; seq 3)", "second> ");
    enter();
    window->type("[");
    ASSERT_TRUE(untilAtCursor("second> "));
    window->type("[");
    ASSERT_TRUE(untilAtCursor("first> "));
    window->type("[");
    ASSERT_TRUE(untilBottom("no earlier prompt"));
    window->type("\x1b[1;2B");  // Shift-Down
    ASSERT_TRUE(untilAtCursor("second> "));
    leave();
}

TEST_P(CopyMode, SavesTheHistoryAsAFile) {
    openWith(R"(printf 'wrap-%0250d-ped\n' 7; seq 200)", "200");
    enter();
    window->type("s");
    ASSERT_TRUE(untilShows(*window, "Save the history"));
    ASSERT_TRUE(untilShows(*window, "~/shell-"));
    window->type("\x15~/no-folder/x.txt\r");
    ASSERT_TRUE(untilShows(*window, "There is no folder"));
    window->type("\x15~/kept.txt\r");
    ASSERT_TRUE(untilBottom("lines saved to "));
    const std::string kept = folder.read("kept.txt");
    EXPECT_THAT(kept, HasSubstr("\nwrap-" + std::string(249, '0') + "7-ped\n1\n2\n"));
    EXPECT_THAT(kept, HasSubstr("\n199\n200\n"));
    EXPECT_TRUE(kept.ends_with("ready>\n")) << kept.substr(kept.size() - 20);
    struct stat facts = {};
    ASSERT_EQ(stat(folder.path("kept.txt").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
    leave();
    // From the pane itself; the same name is accepted on the second time only.
    folder.write("kept.txt", "mine\n");
    window->command("S");
    ASSERT_TRUE(untilShows(*window, "Save the history"));
    window->type("\x15~/kept.txt\r");
    ASSERT_TRUE(untilShows(*window, "The file exists"));
    EXPECT_EQ(folder.read("kept.txt"), "mine\n");
    window->type("\r");
    EXPECT_TRUE(until(*window, [&] { return folder.read("kept.txt") == kept; }));
}

TEST_P(CopyMode, TheMouseScrollsAndSelectsInIt) {
    openWith("seq 1001 1300; echo en''d", "end");
    enter();
    window->press({left() + 3, 5}, 64);
    ASSERT_TRUE(until(*window, [&] { return window->row(1).contains("-3"); }));
    // From the start of one row to the second column of the next.
    window->press({left(), 3});
    window->drag({left() + 1, 4});
    window->release({left() + 1, 4});
    ASSERT_TRUE(until(*window, [&] { return window->clipboard().size() == 7; })) << window->clipboard();
    const std::string first = window->clipboard().substr(0, 4);
    // Keys go on from where the mouse ended.
    EXPECT_TRUE(copies("jy", first + "\n" + std::to_string(std::stoi(first) + 1) + "\n" +
                                 std::to_string(std::stoi(first) + 2).substr(0, 2)));
    EXPECT_TRUE(untilBottom("characters copied"));
}

}  // namespace
}  // namespace orvane
