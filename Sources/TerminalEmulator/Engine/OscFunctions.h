#pragma once

#include <cstdint>
#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"

namespace orvane::OscFunctions {

/// Carries out an operating system command; what is not known or malformed changes nothing and is logged.
void dispatch(TerminalState& state, std::int32_t code, std::string_view payload, StringEnd end);

}  // namespace orvane::OscFunctions
