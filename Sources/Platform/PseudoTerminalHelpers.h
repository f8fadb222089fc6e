#pragma once

#include <sys/types.h>

#include <expected>
#include <string>
#include <vector>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane {

/// The size of a terminal as the system keeps it (TIOCSWINSZ).
struct WindowSize {
    unsigned short rows = 0;
    unsigned short cols = 0;
    unsigned short xPixels = 0;
    unsigned short yPixels = 0;

    bool operator==(const WindowSize&) const = default;
};

namespace PseudoTerminalHelpers {

struct Command {
    std::string path;                      ///< used as it is, without a search
    std::vector<std::string> arguments;    ///< the whole vector, with the zeroth
    std::vector<std::string> environment;  ///< "NAME=value"
    std::string workingDirectory;          ///< empty: ours; one that cannot be entered is ignored
};

/// A program that was just started in a session of its own on a new pseudo-terminal, which is its controlling one.
struct Process {
    pid_t pid = 0;
    FileDescriptor exit;    ///< a pidfd: readable when the program has ended
    FileDescriptor master;  ///< does not block
};

/// Starts the program with default signal handlers, no blocked signals and no descriptor of ours. A path that cannot be
/// executed is no error here: the child ends with 127. EINVAL for a zero byte in a text.
[[nodiscard]] std::expected<Process, SystemError> forkAndExec(const Command& command, const WindowSize& windowSize);

[[nodiscard]] std::expected<void, SystemError> setWinSize(int masterPtyDescriptor, const WindowSize& windowSize);

/// How many bytes can be read at once (FIONREAD).
[[nodiscard]] std::expected<int, SystemError> availableBytes(int descriptor);

/// How many bytes written to the terminal its programs have not read yet.
[[nodiscard]] std::expected<int, SystemError> unreadInput(int masterPtyDescriptor);

/// The process group in the foreground of the terminal; 0 when there is none.
pid_t foregroundProcessGroup(int masterPtyDescriptor);

}  // namespace PseudoTerminalHelpers

}  // namespace orvane
