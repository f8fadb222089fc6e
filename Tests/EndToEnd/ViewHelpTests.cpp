// What the view tells a person about itself: all keys on one screen in every language, and a welcome once in a life.

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <set>

#include "EndToEnd/ViewInSizes.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"

namespace orvane {
namespace {

class ViewHelp : public ViewInSizes {
 protected:
    /// What the commands with keys do; those of four directions or nine numbers have a row together.
    std::set<std::string> meanings() {
        constexpr std::array<std::string_view, 7> families = {"focus-", "resize-", "tab-",   "move-tab-",
                                                              "swap-",  "grow-",   "shrink-"};
        std::set<std::string> texts;
        const auto rows = Json::parse(orvane({"keys", "--json"})->output);
        for (const JsonValue& value : rows->as_array()) {
            const JSONObject row(value);
            const std::string command = row.string("command");
            const bool isOfMany = std::ranges::any_of(families, [&](auto start) { return command.starts_with(start); });
            if (!isOfMany && !row.string("keys").empty()) texts.insert(row.string("meaning"));
        }
        return texts;
    }
    ::testing::AssertionResult untilShowsAll(const std::set<std::string>& texts) {
        std::string missing;
        return until(*window,
                     [&] {
                         const auto none = std::ranges::find_if_not(
                             texts, [&](const std::string& text) { return window->shows(text); });
                         missing = none == texts.end() ? "" : *none;
                         return none == texts.end();
                     })
               << "missing: " << missing;
    }
};

// The first is what terminals begin with: nothing scrolls from there on.
INSTANTIATE_TEST_SUITE_P(, ViewHelp, ::testing::Values(Size{80, 24}, Size{200, 50}), nameOfSize);

class ViewWelcome : public ViewInSizes {
 protected:
    void startAnew() {
        std::filesystem::remove(folder.path("config/Orvane/preferences.json"));
        openShell();
        for (const char* part : {"Welcome to Orvane", "This is a shell", "begins every command", "Who waits for you",
                                 "leaves; your agents"})
            EXPECT_TRUE(untilShows(*window, part));
    }
};

INSTANTIATE_TEST_SUITE_P(, ViewWelcome, smallestAndLarge(), nameOfSize);

TEST_P(ViewHelp, AllKeysAreOnOneScreenInEveryLanguage) {
    openShell();
    window->command("?");
    ASSERT_TRUE(untilBottom("any key leaves")) << "nothing is out of sight";
    for (const char* heading : {"Panes", "Sessions", "Tabs", "Projects", "View", "Mouse"})
        EXPECT_TRUE(window->shows(heading)) << heading;
    for (const char* ofMany : {"←↓↑→ ", "C-←↓↑→ ", "1-9 ", "< > "})
        EXPECT_TRUE(window->shows(ofMany)) << ofMany;
    for (const char* mouse :
         {"drag: select, copy", "drag titles and tabs", "Ctrl-click: open link", "Shift: terminal’s own"})
        EXPECT_TRUE(window->shows(mouse)) << mouse;
    EXPECT_GT(meanings().size(), 40U);
    for (const char* language : {"en", "de", "es", "fr", "ja", "pt", "zhHans"}) {
        EXPECT_EQ(orvane({"settings", "language", language})->status(), 0);
        EXPECT_TRUE(untilShowsAll(meanings())) << language;
    }
    window->type("q");
    EXPECT_TRUE(untilGone(*window, "1-9 "));
}

TEST_P(ViewWelcome, TheWelcomeGoesWithAnyKeyOrClickWhichDoesItsWorkAndNeverComesBack) {
    startAnew();
    window->type("echo ty''ped\r");
    EXPECT_TRUE(untilShows(*window, "typed"));
    EXPECT_FALSE(window->shows("Welcome"));
    window->command("d");
    ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
    openShell();
    EXPECT_FALSE(window->shows("Welcome"));
    quit();
    openShell();
    EXPECT_FALSE(window->shows("Welcome"));
    quit();
    startAnew();
    window->click(*window->find("ready"), 2);
    EXPECT_TRUE(until(*window, [&] { return window->clipboard().starts_with("ready"); }));
    EXPECT_TRUE(untilGone(*window, "Welcome"));
}

}  // namespace
}  // namespace orvane
