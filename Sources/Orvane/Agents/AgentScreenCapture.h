#pragma once

#include <string>

#include "OrvaneCore/Agents/Signals/AgentScreen.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {

/// The screen of a terminal as the recognisers of agents take it: the rows of the screen, and above them as much of the
/// history as is looked at, for a dialog that is higher than the screen.
AgentScreen captureAgentScreen(const Terminal& terminal, SessionKind kind);

}  // namespace orvane
