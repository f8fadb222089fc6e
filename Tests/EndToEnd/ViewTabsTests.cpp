// Tabs and layouts by keyboard.

#include <gmock/gmock.h>

#include "EndToEnd/ViewInSizes.h"

namespace orvane {
namespace {

class ViewTabs : public ViewInSizes {
 protected:
    void moveLeft(int times) {
        for (int time = 0; time < times; ++time)
            window->command("<");
    }
};

INSTANTIATE_TEST_SUITE_P(, ViewTabs, smallestAndLarge(), nameOfSize);

TEST_P(ViewTabs, APaneGoesToATabOfItsOwnAndToAnother) {
    openShell();
    nameTab("first");
    name("one");
    window->command("!");
    ASSERT_TRUE(untilBottom("This pane has its tab for itself already"));
    window->command("%");
    ASSERT_TRUE(untilPanes(2));
    name("two");
    window->command("!");
    ASSERT_TRUE(untilShows(*window, "2 Workspace"));
    ASSERT_TRUE(until(*window, [&] { return panes() == 1 && window->shows("─ · two "); }));
    nameTab("second");
    window->command(".");
    ASSERT_TRUE(untilShows(*window, "Tab to move the pane to"));
    EXPECT_TRUE(untilShows(*window, "New tab"));
    EXPECT_EQ(window->count("second"), 1) << "it is in that one already";
    window->type("first\r");
    ASSERT_TRUE(untilGone(*window, "Tab to move the pane to"));
    window->command("1");
    EXPECT_TRUE(until(*window, [&] { return window->shows("─ · one ") && window->shows("─ · two "); }));
}

TEST_P(ViewTabs, TabsAreOrderedAndThoseWithoutRoomAreInAMenu) {
    openShell();
    nameTab("a1");
    for (const char* title : {"b2", "c3", "d4", "e5", "f6"})
        newTab(title);
    if (GetParam().cols > 100) {
        moveLeft(3);
        ASSERT_TRUE(untilShows(*window, "3 f6"));
        window->command(">");
        ASSERT_TRUE(untilShows(*window, "4 f6"));
        window->command("'");
        EXPECT_TRUE(untilBottom("No tab is hidden"));
        return;
    }
    ASSERT_TRUE(untilShows(*window, "+2"));
    EXPECT_FALSE(window->shows("e5"));
    window->command("'");
    ASSERT_TRUE(untilShows(*window, "Hidden tabs"));
    EXPECT_TRUE(window->shows("e5") && window->shows("f6"));
    window->type("\x1b");
    ASSERT_TRUE(untilGone(*window, "Hidden tabs"));
    moveLeft(3);
    ASSERT_TRUE(untilShows(*window, "3 f6"));
    window->command(">");
    ASSERT_TRUE(untilShows(*window, "4 f6"));
    window->click(*window->find("+2"));
    ASSERT_TRUE(untilShows(*window, "Hidden tabs"));
    window->type("e5\r");
    ASSERT_TRUE(untilGone(*window, "Hidden tabs"));
    window->command(",");
    EXPECT_TRUE(until(*window, [&] { return window->shows("New name of the tab") && window->shows("e5"); }));
}

TEST_P(ViewTabs, LayoutsAreSavedAppliedAndDeleted) {
    openShell();
    const auto choose = [&](const std::string& typed, const std::string& item) {
        window->command(" ");
        ASSERT_TRUE(untilShows(*window, "Layouts"));
        window->type(typed);
        ASSERT_TRUE(untilShows(*window, item));
        window->type("\r");
        ASSERT_TRUE(untilGone(*window, "Layouts"));
    };
    const auto emptyPanes = [&] { return window->count("An empty pane"); };
    choose("grid", "2×2 grid");
    ASSERT_TRUE(until(*window, [&] { return emptyPanes() == 3; }));
    choose("save this", "Save this layout");
    ASSERT_TRUE(untilShows(*window, "Name of the layout"));
    window->type("grid\r");
    EXPECT_TRUE(untilShows(*window, "“grid” is the name of a built-in layout."));
    window->type("\x15mine\r");
    ASSERT_TRUE(untilGone(*window, "Name of the layout"));
    choose("1 pane", "1 pane");
    ASSERT_TRUE(until(*window, [&] { return emptyPanes() == 0; }));
    choose("mine", "saved");
    ASSERT_TRUE(until(*window, [&] { return emptyPanes() == 3; }));
    window->command(":");
    window->type("layout 2 rows");
    ASSERT_TRUE(untilShows(*window, "layout: 2 rows"));
    window->type("\r");
    ASSERT_TRUE(until(*window, [&] { return emptyPanes() == 1; }));
    window->command(":");
    window->type("layout mine\r");
    ASSERT_TRUE(until(*window, [&] { return emptyPanes() == 3; }));
    choose("delete", "Delete a saved layout…");
    ASSERT_TRUE(untilShows(*window, "Enter deletes a saved layout"));
    ASSERT_TRUE(untilShows(*window, "mine"));
    window->type("\r");
    EXPECT_TRUE(untilShows(*window, "Nothing matches"));
    window->type("\x1b");
    ASSERT_TRUE(untilGone(*window, "Nothing matches"));
    window->command(" ");
    ASSERT_TRUE(untilShows(*window, "Layouts"));
    EXPECT_FALSE(window->shows("mine") || window->shows("Delete a saved"));
}

}  // namespace
}  // namespace orvane
