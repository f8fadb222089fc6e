#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane::testing {

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

    /// Rows of the screen, each ended by "|", without the empty cells at their ends; empty rows at the end are left
    /// out.
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
