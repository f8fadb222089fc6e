// A person with several agents always knows where to look: who waits, in all projects, and who has ended unseen.

#include <gmock/gmock.h>

#include <filesystem>

#include "EndToEnd/ViewInSizes.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using Style = Attribute::CharacterStyle;

class ViewAttention : public ViewInSizes {
 protected:
    /// Waits for the status that the prompt leads to.
    void send(const std::string& session, const std::string& prompt, const std::string& status) {
        EXPECT_EQ(orvane({"send", session, prompt})->status(), 0) << prompt;
        const auto run = orvane({"wait", session, "--until", status, "--timeout", "20"});
        EXPECT_EQ(run->status(), 0) << prompt << "\n" << run->errors;
    }
    std::string agent(const std::string& title, const std::string& project = ".") {
        return newSession({"claude", "--title", title, "--project", project});
    }
    /// A narrow window begins without it.
    void turnRail() {
        if (GetParam().cols < 80) window->command("b");
    }
    std::string below(const std::string& text) const { return window->row(window->find(text)->y + 1); }
    /// It has the keyboard, whatever its mark.
    ::testing::AssertionResult untilLookedAt(const std::string& title) {
        return until(*window,
                     [&] {
                         const auto at = window->find(" " + title + " ─");
                         return at && (window->style({at->x + 1, at->y}) & Style::bold) == Style::bold;
                     })
               << "wanted: " << title;
    }
};

INSTANTIATE_TEST_SUITE_P(, ViewAttention, smallestAndLarge(), nameOfSize);

TEST_P(ViewAttention, OneKeyGoesToWhoHasWaitedLongestInAnyProjectAndThenToWhoHasEndedUnseen) {
    openShell();
    std::filesystem::create_directory(folder.path("other"));
    EXPECT_EQ(orvane({"open", folder.path("other")})->status(), 0);
    const std::string late = agent("late");
    const std::string early = agent("early", folder.path("other"));
    const std::string quiet = agent("quiet");
    send(early, "fake:bash", "waiting");
    send(late, "fake:bash", "waiting");
    ASSERT_TRUE(untilBottom("2 sessions need you"));
    window->command("u");
    ASSERT_TRUE(untilLookedAt("early"));
    window->command("u");
    ASSERT_TRUE(untilLookedAt("late"));
    window->command("u");
    ASSERT_TRUE(untilLookedAt("early")) << "it still waits";
    window->command("u");
    ASSERT_TRUE(untilLookedAt("late"));

    // Nobody looks at it when it ends.
    send(quiet, "hello", "idle");
    turnRail();
    ASSERT_TRUE(untilShows(*window, "  ◆ quiet"));
    turnRail();
    for (const std::string& each : {early, late})
        EXPECT_EQ(orvane({"deny", each})->status(), 0);
    ASSERT_TRUE(untilGone(*window, "need"));
    window->command("u");
    EXPECT_TRUE(untilLookedAt("quiet"));
    turnRail();
    EXPECT_TRUE(untilShows(*window, "  ○ quiet"));
}

TEST_P(ViewAttention, AllWhoWaitAreInOneListAndAnsweredThereOneAfterTheOther) {
    openShell();
    const std::string alpha = agent("alpha");
    const std::string beta = agent("beta");
    window->command("A");
    EXPECT_TRUE(untilBottom("Nobody needs you at the moment"));
    send(alpha, "fake:bash", "waiting");
    send(beta, "fake:edit", "waiting");
    window->command("A");
    ASSERT_TRUE(untilShows(*window, "▸ alpha"));
    EXPECT_TRUE(untilShows(*window, "  beta"));
    EXPECT_TRUE(untilShows(*window, "1  Yes"));
    EXPECT_TRUE(untilShows(*window, "4  No"));
    EXPECT_THAT(below("▸ alpha"), HasSubstr("Do you want t"));
    window->type("\x1b[B");
    ASSERT_TRUE(untilShows(*window, "▸ beta"));
    EXPECT_THAT(below("▸ beta"), HasSubstr("Do you want t"));
    EXPECT_TRUE(untilGone(*window, "4  No"));
    // Typed in one go they were both meant for what was to be read then.
    window->type("11");
    ASSERT_TRUE(untilShows(*window, "▸ alpha")) << "the next one comes up";
    EXPECT_EQ(orvane({"wait", beta, "--until", "idle", "--timeout", "20"})->status(), 0);
    EXPECT_THAT(orvane({"screen", beta})->output, HasSubstr("The file was"));
    EXPECT_TRUE(untilShows(*window, "1 session needs you"));
    EXPECT_EQ(orvane({"answer", alpha, "1"})->status(), 0);
    EXPECT_TRUE(untilGone(*window, "▸ alpha")) << "nothing waits any more";
    EXPECT_TRUE(untilBottom("C-b commands"));
}

}  // namespace
}  // namespace orvane
