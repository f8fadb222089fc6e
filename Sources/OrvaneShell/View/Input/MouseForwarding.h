#pragma once

#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "TerminalEmulator/Terminal.h"

/// The mouse on its way to a program. Places are cells of its own screen, from 0.
namespace orvane::MouseForwarding {

/// Whether the program has asked for such events.
bool isWanted(const MouseEvent& event, const TerminalModes& modes);

/// Has the terminal tell its program, in the protocol that is on. Nothing happens when it is not wanted, lies outside
/// the screen or cannot be said in the protocol.
void forward(const MouseEvent& event, Terminal& terminal);

/// What the wheel means to a program that has the alternate screen and no mouse (a pager, an editor): three cursor keys
/// up or down. Empty for all else.
std::string wheelKeys(const MouseEvent& event, const Terminal& terminal);

}  // namespace orvane::MouseForwarding
