#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane {

/// Carries out a control sequence; false for one that is not known.
bool csiDispatch(TerminalState& state, const CsiArguments& arguments);

}  // namespace orvane
