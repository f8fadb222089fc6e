#include "ScriptedAgent/TerminalGuard.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace orvane::scripted {

TerminalGuard::TerminalGuard() {
    termios attributes{};
    if (tcgetattr(STDIN_FILENO, &attributes) != 0) return;
    before_ = attributes;
    cfmakeraw(&attributes);
    tcsetattr(STDIN_FILENO, TCSANOW, &attributes);
}

TerminalGuard::~TerminalGuard() {
    if (before_) tcsetattr(STDIN_FILENO, TCSADRAIN, &*before_);
}

Size TerminalGuard::size() const {
    winsize size{};
    if (ioctl(STDIN_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
    return {.cols = size.ws_col, .rows = size.ws_row};
}

void TerminalGuard::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) return;
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace orvane::scripted
