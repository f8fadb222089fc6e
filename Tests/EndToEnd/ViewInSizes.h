#pragma once

#include <memory>
#include <string>

#include "EndToEnd/ViewInTerminal.h"

namespace orvane {

/// In columns and rows.
struct Size {
    int cols;
    int rows;
};

/// The same in the smallest window and in a large one.
class ViewInSizes : public ViewInTerminal, public ::testing::WithParamInterface<Size> {
 protected:
    void openShell() {
        window = open({}, GetParam().cols, GetParam().rows);
        ASSERT_TRUE(untilShows(*window, "ready> "));
    }
    ::testing::AssertionResult untilBottom(const std::string& text) {
        return until(*window, [&] { return window->bottom().contains(text); }) << "wanted below: " << text;
    }
    /// The first column of the panes, behind the rail.
    int left() const {
        for (int col = 0; col < GetParam().cols; ++col)
            if (window->terminal().getCharacter(col, 5) == "│") return col + 1;
        return 0;
    }

    /// Of the focused pane.
    void name(const std::string& title) {
        window->command("$");
        ASSERT_TRUE(untilShows(*window, "New name of the session"));
        window->type("\x15" + title + "\r");
        ASSERT_TRUE(untilShows(*window, "─ · " + title + " "));
    }
    /// Of the tab that is shown.
    void nameTab(const std::string& title) {
        window->command(",");
        ASSERT_TRUE(untilShows(*window, "New name of the tab"));
        window->type("\x15" + title + "\r");
        ASSERT_TRUE(untilGone(*window, "New name of the tab"));
    }
    void newTab(const std::string& title) {
        window->command("t");
        nameTab(title);
    }
    /// Where the pane of a shell begins, with the line that has its name.
    Place pane(const std::string& title) const { return window->find("─ · " + title + " ").value_or(Place{-1, -1}); }
    int panes() const { return window->count("─ · "); }
    ::testing::AssertionResult untilPanes(int wanted) {
        return until(*window, [&] { return panes() == wanted; }) << "panes wanted: " << wanted;
    }
    ::testing::AssertionResult untilFocused(const std::string& title) {
        const auto isBold = [&](const Place& at) {
            return (window->style({at.x + 4, at.y}) & Attribute::CharacterStyle::bold) !=
                   Attribute::CharacterStyle::none;
        };
        return until(*window, [&] { return pane(title).x >= 0 && isBold(pane(title)); }) << "wanted: " << title;
    }
    /// Ends the host in order.
    void quit() {
        window->command("Q");
        ASSERT_TRUE(untilShows(*window, "Quit Orvane?"));
        window->type("y");
        ASSERT_TRUE(until(*window, [&] { return window->end.has_value(); }));
        ASSERT_TRUE(loop.runUntil([&] { return seen().state != InstanceLock::State::running; }));
    }

    std::unique_ptr<Window> window;
};

inline auto smallestAndLarge() {
    return ::testing::Values(Size{60, 15}, Size{200, 50});
}
inline std::string nameOfSize(const ::testing::TestParamInfo<Size>& size) {
    return std::to_string(size.param.cols);
}

}  // namespace orvane
