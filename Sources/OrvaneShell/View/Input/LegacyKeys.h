#pragma once

#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "TerminalEmulator/TerminalModes.h"

/// Keys as terminals have always sent them, and xterm's modifyOtherKeys for what those forms cannot tell.
namespace orvane::LegacyKeys {

std::string encode(const KeyEvent& event, const TerminalModes& modes);

/// Whether a program with modifyOtherKeys at this level, 1 or 2, is told the key by `encodeOther`: at 1 what has no
/// form of its own, at 2 all keys with modifiers but those that only type another character.
bool isOtherKey(const KeyEvent& event, int level);
std::string encodeOther(const KeyEvent& event);

}  // namespace orvane::LegacyKeys
