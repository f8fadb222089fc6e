#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// How the keyboard tells keys: the progressive enhancements, kept for each screen, and xterm's options of modifiers.
namespace orvane::KeyboardFunctions {

void push(TerminalState& state, const ParserParameters& parameters);    ///< CSI > flags u
void pop(TerminalState& state, const ParserParameters& parameters);     ///< CSI < count u
void set(TerminalState& state, const ParserParameters& parameters);     ///< CSI = flags ; 1 all, 2 on or 3 off u
void report(TerminalState& state, const ParserParameters& parameters);  ///< CSI ? u

void setModifiers(TerminalState& state, const ParserParameters& parameters);      ///< XTMODKEYS, CSI > … m
void disableModifiers(TerminalState& state, const ParserParameters& parameters);  ///< CSI > … n
void reportModifiers(TerminalState& state, const ParserParameters& parameters);   ///< XTQMODKEYS, CSI ? … m

}  // namespace orvane::KeyboardFunctions
