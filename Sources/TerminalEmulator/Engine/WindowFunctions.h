#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane::WindowFunctions {

/// XTWINOPS, `CSI … t`: asks the delegate for what concerns the window, tells sizes and titles, and keeps the stacks of
/// titles.
void manipulate(TerminalState& state, const ParserParameters& parameters);

/// What DECSCPP (`CSI … $ |`) and DECSNLS (`CSI … * |`) ask of the window.
void selectColumns(TerminalState& state, const ParserParameters& parameters);
void selectLines(TerminalState& state, const ParserParameters& parameters);

}  // namespace orvane::WindowFunctions
