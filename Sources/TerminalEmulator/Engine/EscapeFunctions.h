#pragma once

#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"

namespace orvane::EscapeFunctions {

/// An escape sequence that changes the state alone: cursor, tabs, character sets, sizes of rows. False for one that is
/// not among these.
bool dispatch(TerminalState& state, char final, std::string_view collect);

}  // namespace orvane::EscapeFunctions
