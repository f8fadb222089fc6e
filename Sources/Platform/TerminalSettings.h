#pragma once

#include <termios.h>

#include <expected>

#include "Platform/SystemError.h"

namespace orvane::TerminalSettings {

/// The settings with every key coming at once, unchanged and without an echo, and output going out unchanged.
termios raw(termios settings);

/// Sets them without waiting for what is on its way out, and also in the background of the terminal, where SIGTTOU
/// would stop the process.
std::expected<void, SystemError> apply(int terminal, const termios& settings);

}  // namespace orvane::TerminalSettings
