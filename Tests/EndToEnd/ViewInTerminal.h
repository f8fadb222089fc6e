#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "EndToEnd/ViewTest.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

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
    /// What the view has put into the clipboard last.
    const std::string& clipboard() const { return terminal_.clipboard; }

 private:
    class Screen final : public HeadlessTerminal {
     public:
        using HeadlessTerminal::HeadlessTerminal;
        void clipboardCopy(std::string_view content) override { clipboard = content; }
        std::string clipboard;
    };

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
};

}  // namespace orvane
