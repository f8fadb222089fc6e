#pragma once

#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "TerminalEmulator/Engine/KeyModifierOptions.h"
#include "TerminalEmulator/TerminalModes.h"

namespace orvane {

/// The bytes that a program whose terminal is in this state expects for the key; none when it has no way to tell it, or
/// the program has not asked (releases, modifier keys).
///
/// - With progressive enhancements on, the enhanced form, also when the outer terminal told the key in its legacy one.
/// - Else with modifyOtherKeys on, xterm's form for what the legacy form cannot tell.
/// - Else the legacy form. A character, Tab, Backspace or Escape that came in it passes as the bytes it came with;
/// cursor
///   keys follow DECCKM, and function keys take the form of this terminal, not of the outer one.
///
/// Shift-Enter has no legacy form of its own. It becomes that of Alt-Enter, ESC CR, which agents take for a new line in
/// what is being written, where terminals of old would send the message.
std::string encodeKey(const KeyEvent& event, const TerminalModes& modes, const KeyboardModeState& keyboard,
                      const KeyModifierOptions& modifierOptions = {});

}  // namespace orvane
