#pragma once

#include <termios.h>

#include <optional>
#include <string_view>

#include "ScriptedAgent/Painter.h"

namespace orvane::scripted {

/// The terminal on the standard descriptors, raw as long as this lives.
class TerminalGuard {
 public:
    TerminalGuard();
    ~TerminalGuard();
    TerminalGuard(const TerminalGuard&) = delete;
    TerminalGuard& operator=(const TerminalGuard&) = delete;

    bool isTerminal() const { return before_.has_value(); }
    Size size() const;
    /// Waits for a terminal that does not read; gives up when it is gone.
    static void write(std::string_view bytes);

 private:
    std::optional<termios> before_;
};

}  // namespace orvane::scripted
