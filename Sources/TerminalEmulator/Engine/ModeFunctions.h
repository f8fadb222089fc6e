#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// Modes: what programs switch on and off, ask for, save and restore.
namespace orvane::ModeFunctions {

enum class Switch : std::uint8_t { off, on };

void setAnsi(TerminalState& state, const ParserParameters& parameters, Switch to);     ///< SM, RM
void setPrivate(TerminalState& state, const ParserParameters& parameters, Switch to);  ///< DECSET, DECRST

void reportAnsi(TerminalState& state, const ParserParameters& parameters);     ///< DECRQM
void reportPrivate(TerminalState& state, const ParserParameters& parameters);  ///< DECRQM of a private mode

void savePrivate(TerminalState& state, const ParserParameters& parameters);     ///< XTSAVE
void restorePrivate(TerminalState& state, const ParserParameters& parameters);  ///< XTRESTORE

}  // namespace orvane::ModeFunctions
