#pragma once

#include <utility>
#include <vector>

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {

/// Handlers for the commands of colours that nothing here is drawn in, but that xterm's programs set and ask for: OSC 5
/// and 105, or 4 and 104 from number 256 on (bold, underlined, blinking, reverse, italic text), 106 (whether those are
/// used), 13 to 19 and 113 to 119 (the pointer, Tektronix, the selection), and 110 and 111, which reset foreground and
/// background. To be registered with the terminal whose state this is, which must outlive them; what they keep lives in
/// them.
std::vector<std::pair<int, Terminal::OscHandler>> furtherColorHandlers(TerminalState& state);

}  // namespace orvane
