#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "EndToEnd/ViewTest.h"
#include "OrvaneCore/Support/Text.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

/// In columns and rows.
struct Size {
    int cols;
    int rows;
};

/// A cell of a window, from 0.
struct Place {
    int x = 0;
    int y = 0;

    friend bool operator==(const Place&, const Place&) = default;
};

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
    /// As a mouse that reports in SGR form does; modifiers are added to the button.
    void press(const Place& at, int button = 0) { type(mouse(button, at, 'M')); }
    void drag(const Place& to) { type(mouse(32, to, 'M')); }
    void release(const Place& at, int button = 0) { type(mouse(button, at, 'm')); }
    /// So fast that several are one.
    void click(const Place& at, int times = 1, int button = 0) {
        std::string bytes;
        for (int i = 0; i < times; ++i)
            bytes += mouse(button, at, 'M') + mouse(button, at, 'm');
        type(bytes);
    }
    void resize(int cols, int rows) { terminal_.terminal.resize(cols, rows); }
    std::string row(int y) const {
        return terminal_.terminal.getLine(y).translateToString(terminal_.terminal.clusters(),
                                                               {.skipsNullCellsFollowingWide = true});
    }
    std::string text() const {
        std::string all;
        for (int y = 0; y < terminal_.terminal.rows(); ++y)
            all += row(y) + "\n";
        return all;
    }
    bool shows(std::string_view wanted) const { return text().contains(wanted); }
    std::string bottom() const { return row(terminal_.terminal.rows() - 1); }
    /// Where the text stands first, from the top.
    std::optional<Place> find(std::string_view wanted) const {
        for (int y = 0; y < terminal_.terminal.rows(); ++y) {
            const std::string line = row(y);
            if (const auto at = line.find(wanted); at != std::string::npos)
                return Place{.x = static_cast<int>(Text::displayWidth(line.substr(0, at))), .y = y};
        }
        return std::nullopt;
    }
    int count(std::string_view wanted) const {
        int found = 0;
        const std::string all = text();
        for (auto at = all.find(wanted); at != std::string::npos; at = all.find(wanted, at + wanted.size()))
            ++found;
        return found;
    }
    Attribute::CharacterStyle style(const Place& at) const {
        const auto cell = terminal_.terminal.getCharData(at.x, at.y);
        return cell ? cell->attribute.style : Attribute::CharacterStyle::none;
    }
    const Terminal& terminal() const { return terminal_.terminal; }
    pid_t process() const { return terminal_.process.shellPid(); }

    std::optional<int> end;
    /// What the view has put into the clipboard last.
    const std::string& clipboard() const { return terminal_.clipboard; }

 private:
    class Screen final : public HeadlessTerminal {
     public:
        using HeadlessTerminal::HeadlessTerminal;
        void clipboardCopy(std::string_view content) override { clipboard = content; }
        std::string clipboard;
    };

    static std::string mouse(int button, const Place& at, char end) {
        return "\x1b[<" + std::to_string(button) + ";" + std::to_string(at.x + 1) + ";" + std::to_string(at.y + 1) +
               end;
    }

    static std::vector<std::string> list(const Environment& environment) {
        std::vector<std::string> pairs;
        for (const auto& [name, value] : environment)
            pairs.push_back(name + "=" + value);
        return pairs;
    }

    Screen terminal_;
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
    ::testing::AssertionResult untilBottom(const Window& window, const std::string& text) {
        return until(window, [&] { return window.bottom().contains(text); }) << "wanted below: " << text;
    }
};

/// The same in the smallest window and in a large one.
class ViewInSizes : public ViewInTerminal, public ::testing::WithParamInterface<Size> {
 protected:
    void openShell() {
        window = open({}, GetParam().cols, GetParam().rows);
        ASSERT_TRUE(untilShows(*window, "ready> "));
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
