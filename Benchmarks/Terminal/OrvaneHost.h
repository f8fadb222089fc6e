#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Terminal/Geometry.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane::benchmark {

inline constexpr int historyLines = 10'000;

/// Our terminal with its history, and nobody who draws it.
class OrvaneHost final : private TerminalDelegate {
 public:
    explicit OrvaneHost(Geometry geometry, int scrollback = historyLines)
        : terminal_(*this, {.cols = geometry.cols, .rows = geometry.rows, .scrollback = scrollback}) {}

    void feed(std::string_view bytes) { terminal_.feed(bytes); }
    Terminal& terminal() { return terminal_; }

    /// The rows of the screen, without blanks at their ends.
    std::vector<std::string> screenText() const;

 private:
    void send(std::string_view /*bytes*/) override {}

    Terminal terminal_;
};

}  // namespace orvane::benchmark
