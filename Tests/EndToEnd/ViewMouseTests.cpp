// The mouse in the view, as the bytes that terminals send for it.

#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "EndToEnd/ViewInSizes.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using Style = Attribute::CharacterStyle;

constexpr int control = 16;

class ViewByMouse : public ViewInSizes {
 protected:
    void run(const std::string& line, const std::string& printed) {
        window->type(line + "\r");
        ASSERT_TRUE(untilShows(*window, printed));
    }
    ::testing::AssertionResult copies(const std::string& text) {
        return until(*window, [&] { return window->clipboard() == text; })
               << "wanted: " << text << "\ncopied: " << window->clipboard();
    }
    bool isInverse(const Place& at) const { return (window->style(at) & Style::inverse) == Style::inverse; }
    Place nameOf(const std::string& title) const { return {pane(title).x + 5, pane(title).y}; }
    Place tab(const std::string& title) const { return window->find(" " + title + " ").value_or(Place{-1, -1}); }
    /// Moves a pane by its name, up to where it would be dropped.
    void hold(const std::string& title, const Place& over) {
        window->press(nameOf(title));
        window->drag({over.x - 1, over.y});
        window->drag(over);
        ASSERT_TRUE(untilBottom("release to drop the pane here"));
    }
    bool isEdge(const Place& at) const { return window->terminal().getCharacter(at.x, at.y) == "│"; }
};

INSTANTIATE_TEST_SUITE_P(, ViewByMouse, smallestAndLarge(), nameOfSize);

TEST_P(ViewByMouse, TabsAreChosenByAClickAndKeepTheOrderTheyAreDraggedInto) {
    openShell();
    name("one");
    nameTab("first");
    newTab("second");
    newTab("third");
    EXPECT_FALSE(window->find("─ · one "));
    window->click(tab("1 first"));
    ASSERT_TRUE(untilShows(*window, "─ · one "));
    const Place end = tab("3 third");
    window->press(tab("1 first"));
    window->drag({end.x + 2, end.y});
    ASSERT_TRUE(untilShows(*window, "3 first"));
    window->release({end.x + 2, end.y});
    window->press(tab("2 third"));
    window->drag(tab("1 second"));
    window->release(tab("1 second"));
    ASSERT_TRUE(untilShows(*window, "2 second"));
    quit();
    openShell();
    for (const char* shown : {"1 third", "2 second", "3 first"})
        EXPECT_TRUE(untilShows(*window, shown));
}

TEST_P(ViewByMouse, APaneIsDroppedWhereThePreviewShowsItAndStaysOnAnyKey) {
    openShell();
    name("one");
    window->command("\"");
    ASSERT_TRUE(untilPanes(2));
    name("two");
    struct Drop {
        const char* zone;
        double x, y;          ///< shares of the other pane
        double seenX, seenY;  ///< in the preview
        std::function<bool(const Place& one, const Place& two)> isThere;
    };
    // Small panes have no zones at their edges.
    const bool isLarge = GetParam().cols > 100;
    const auto drops = std::to_array<Drop>({
        {"leading", .05, .5, .4, .5, [](auto one, auto two) { return one.x < two.x && one.y == two.y; }},
        {"bottom", .5, .95, .5, .6, [](auto one, auto two) { return one.y > two.y && one.x == two.x; }},
        {"trailing", .95, .5, .6, .5, [](auto one, auto two) { return one.x > two.x && one.y == two.y; }},
        {"top", .5, .1, .5, .4, [](auto one, auto two) { return one.y < two.y && one.x == two.x; }},
        {"center", .5, .5, .1, .1, [](auto one, auto two) { return one.x >= 0 && two.x < 0; }},
    });
    for (const Drop& drop : drops) {
        if (!isLarge && std::string_view(drop.zone) != "center") continue;
        SCOPED_TRACE(drop.zone);
        const Place one = pane("one");
        const Place two = pane("two");
        const int cols = (GetParam().cols - left()) / (one.y == two.y ? 2 : 1);
        const int rows = (GetParam().rows - 2) / (one.y == two.y ? 1 : 2);
        const auto at = [&](double x, double y) {
            return Place{two.x + static_cast<int>(cols * x), two.y + static_cast<int>(rows * y)};
        };
        hold("one", at(drop.x, drop.y));
        EXPECT_TRUE(until(*window, [&] { return isInverse(at(drop.seenX, drop.seenY)); }));
        EXPECT_EQ(isInverse(at(1 - drop.seenX, 1 - drop.seenY)), std::string_view(drop.zone) == "center");
        window->type(isLarge ? "\x1b" : "x");
        ASSERT_TRUE(untilBottom("C-b commands"));
        EXPECT_FALSE(isInverse(at(drop.seenX, drop.seenY)));
        window->release(at(drop.x, drop.y));
        window->click({one.x + 2, one.y + 1});
        ASSERT_TRUE(untilFocused("one"));
        EXPECT_EQ(pane("one"), one);
        EXPECT_EQ(pane("two"), two);
        hold("one", at(drop.x, drop.y));
        window->release(at(drop.x, drop.y));
        EXPECT_TRUE(until(*window, [&] { return drop.isThere(pane("one"), pane("two")); }));
    }
    EXPECT_TRUE(untilBottom("1 session or tab has no pane any more, but"));
    EXPECT_FALSE(window->shows("ready> x")) << "the key that ends dragging is typed nowhere";
}

TEST_P(ViewByMouse, APaneIsDroppedOnATabOrBesideTheTabs) {
    openShell();
    nameTab("first");
    name("stays");
    window->command("%");
    ASSERT_TRUE(untilPanes(2));
    name("goes");
    newTab("second");
    window->click(tab("1 first"));
    ASSERT_TRUE(untilShows(*window, "─ · goes "));
    const Place second = tab("2 second");
    hold("goes", second);
    EXPECT_TRUE(until(*window, [&] { return isInverse(second); }));
    window->release(second);
    ASSERT_TRUE(untilBottom("C-b commands"));
    window->click(tab("1 first"));
    ASSERT_TRUE(until(*window, [&] { return window->shows("─ · stays ") && panes() == 1; }));
    window->click(second);
    ASSERT_TRUE(until(*window, [&] { return window->shows("─ · goes ") && panes() == 2; }));
    const Place free{GetParam().cols - 3, 0};
    hold("goes", free);
    EXPECT_TRUE(until(*window, [&] { return isInverse(free); }));
    window->release(free);
    ASSERT_TRUE(until(*window, [&] { return window->shows("3 Workspace") && panes() == 1; }));
    EXPECT_TRUE(window->shows("─ · goes "));
    if (GetParam().cols < 100) return;  // three tabs leave nothing free
    hold("goes", free);
    window->release(free);
    EXPECT_TRUE(untilBottom("This pane has its tab for itself already"));
}

TEST_P(ViewByMouse, TheEdgesBetweenPanesAreDragged) {
    openShell();
    window->command("%");
    ASSERT_TRUE(untilPanes(2));
    Place edge{GetParam().cols - 1, 3};
    while (edge.x > 0 && !isEdge(edge))
        --edge.x;
    window->press(edge);
    for (int step = 1; step <= 7; ++step)
        window->drag({edge.x - step, edge.y});
    window->release({edge.x - 7, edge.y});
    EXPECT_TRUE(until(*window, [&] { return isEdge({edge.x - 7, 3}) && !isEdge(edge); }));
    // The line with the name is the edge between rows.
    window->command("\"");
    ASSERT_TRUE(untilPanes(3));
    name("low");
    const Place low = pane("low");
    window->press({low.x + 15, low.y});
    window->drag({low.x + 15, low.y + 1});
    window->release({low.x + 15, low.y + 1});
    EXPECT_TRUE(until(*window, [&] { return pane("low").y == low.y + 1; }));
}

TEST_P(ViewByMouse, CharactersWordsAndRowsAreCopied) {
    openShell();
    run("printf 'alpha bra''vo charlie\\n'", "alpha bravo charlie");
    const Place word = *window->find("bravo");
    window->click(word, 2);
    EXPECT_TRUE(copies("bravo"));
    EXPECT_TRUE(untilBottom("5 characters copied"));
    window->click({word.x + 1, word.y}, 3);
    EXPECT_TRUE(copies("alpha bravo charlie"));
    window->press({word.x + 2, word.y});
    window->drag({word.x + 4, word.y});
    window->release({word.x + 4, word.y});
    EXPECT_TRUE(until(*window, [&] { return window->clipboard().starts_with("av"); })) << window->clipboard();
    EXPECT_LE(window->clipboard().size(), 3U);
    window->click(word);
    EXPECT_TRUE(until(*window, [&] { return !isInverse(word); })) << "a click takes the selection back";
}

TEST_P(ViewByMouse, AnAddressIsOpenedAsAWholeWithControlOrFromTheList) {
    environment.erase("DISPLAY");
    environment.erase("WAYLAND_DISPLAY");
    openShell();
    const std::string opener = folder.write("opener", "#!/bin/sh\nprintf '%s' \"$1\" > \"$HOME/opened\"\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    ASSERT_EQ(orvane({"settings", "view.linkOpener", opener})->status(), 0);
    // Over two rows.
    const int length = GetParam().cols - left() - 10;
    const std::string address =
        "https://example.org/" + std::string(static_cast<std::size_t>(length) - 1, '0') + "7/end";
    run("clear; printf 'https://example.org/%0" + std::to_string(length) + "d/en''d\\n' 7", "7/end");
    const Place end = *window->find("7/end");
    EXPECT_EQ(window->find("https:")->y + 1, end.y);
    window->click(end);
    window->click({end.x + 1, end.y}, 1, control);
    ASSERT_TRUE(until(*window, [&] { return folder.read("opened") == address; })) << folder.read("opened");
    EXPECT_TRUE(untilBottom("Opening https://example.org/0"));
    EXPECT_EQ(window->clipboard(), "");
    ASSERT_EQ(orvane({"settings", "view.linkOpener", "false"})->status(), 0);
    window->click(end, 1, control);
    EXPECT_TRUE(copies(address));
    EXPECT_TRUE(untilBottom("It could not be opened and was copied: h"));
    ASSERT_EQ(orvane({"settings", "view.linkOpener", "auto"})->status(), 0);
    run("echo http://localhost:80''80/", ":8080/");
    window->command("L");
    ASSERT_TRUE(untilShows(*window, "Links in this pane"));
    ASSERT_TRUE(untilShows(*window, "│  https://example.org/000"));
    window->type("\r");
    EXPECT_TRUE(copies("http://localhost:8080/")) << "the newest is the first";
    EXPECT_TRUE(untilBottom("Copied, as there is nothing here to open it"));
}

}  // namespace
}  // namespace orvane
