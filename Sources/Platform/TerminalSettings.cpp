#include "Platform/TerminalSettings.h"

#include "Platform/SignalsBlocked.h"
#include "Platform/Uninterrupted.h"

namespace orvane::TerminalSettings {

termios raw(termios settings) {
    cfmakeraw(&settings);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return settings;
}

std::expected<void, SystemError> apply(int terminal, const termios& settings) {
    const SignalsBlocked blocked;
    if (uninterrupted([&] { return tcsetattr(terminal, TCSANOW, &settings); }) == 0) return {};
    return std::unexpected(SystemError::last("set up", "a terminal"));
}

}  // namespace orvane::TerminalSettings
