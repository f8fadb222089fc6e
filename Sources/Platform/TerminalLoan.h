#pragma once

#include <termios.h>

#include <expected>
#include <string_view>

#include "Platform/SystemError.h"

namespace orvane {

/// Our own terminal while another process draws on it: what it was like before, to be had back whatever becomes of the
/// other one.
class TerminalLoan {
 public:
    /// Remembers the settings and the modes of both descriptors, which outlive the loan. ENOTTY when one is no
    /// terminal.
    static std::expected<TerminalLoan, SystemError> begin(int input, int output);

    /// Whether the terminal is ours, and not that of another job of the shell.
    bool isInForeground() const;

    /// Sets up the terminal as the other process needs it, after a shell had it in between.
    void makeRawAgain() const;

    /// Gives back everything that was remembered, for one who has not drawn.
    void end() const;
    /// Writes the farewell first, and drops what was typed and not read. Whoever drew must have stopped. Takes at most
    /// a second, also when the terminal takes no output.
    void end(std::string_view farewell) const;

 private:
    TerminalLoan() = default;

    int input_ = -1;
    int output_ = -1;
    int inputFlags_ = 0;
    int outputFlags_ = 0;
    termios settings_{};
};

}  // namespace orvane
