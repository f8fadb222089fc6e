#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane {

/// SGR: the look of what is written from now on. Colours come as "38;5;1", "38;2;1;2;3", "38:5:1", "38:2:1:2:3" and,
/// with the number of a colour space that nobody uses, "38:2::1:2:3".
void selectGraphicRendition(TerminalState& state, const ParserParameters& parameters);

}  // namespace orvane
