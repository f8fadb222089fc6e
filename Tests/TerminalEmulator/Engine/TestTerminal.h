#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Terminal.h"

namespace orvane::testing {

/// Keeps what a terminal sends and tells.
class RecordingDelegate : public TerminalDelegate {
 public:
    std::string sent;
    std::vector<std::string> events;  ///< "title x", "bell", "sync on"
    bool isTrusted = true;

    void send(std::string_view bytes) override { sent += bytes; }
    void setTerminalTitle(std::string_view title) override { events.push_back("title " + std::string(title)); }
    void setTerminalIconTitle(std::string_view title) override { events.push_back("icon " + std::string(title)); }
    void synchronizedOutputChanged(bool isActive) override { events.emplace_back(isActive ? "sync on" : "sync off"); }
    void bell() override { events.emplace_back("bell"); }
    void bufferActivated() override { events.emplace_back("buffer"); }
    void showCursor() override { events.emplace_back("show"); }
    void hideCursor() override { events.emplace_back("hide"); }
    bool isProcessTrusted() override { return isTrusted; }
};

/// A terminal with its delegate, and its screen as text.
class TestTerminal {
 public:
    explicit TestTerminal(int cols = 10, int rows = 4, int scrollback = 100)
        : terminal(delegate, {.cols = cols, .rows = rows, .scrollback = scrollback}) {}

    RecordingDelegate delegate;
    Terminal terminal;

    TestTerminal& feed(std::string_view bytes) {
        terminal.feed(bytes);
        return *this;
    }

    /// Rows of the screen, each ended by "|", without the empty cells at their ends; empty rows at the end are left out.
    std::string screen() const { return text(terminal.buffer().yBase()); }
    /// The same with the history before it.
    std::string all() const { return text(0); }
    std::string cursor() const;
    /// Everything that a program or a person can see of it: cells with their looks, wrap flags, cursor, modes, answers.
    std::string snapshot() const;

 private:
    std::string text(int from) const;
};

}  // namespace orvane::testing
