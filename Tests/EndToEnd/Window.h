#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "Platform/Environment.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

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

}  // namespace orvane
