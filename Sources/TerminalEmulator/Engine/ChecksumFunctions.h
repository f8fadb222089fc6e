#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

namespace orvane::ChecksumFunctions {

/// DECRQCRA: the sum of what an area shows. A program that is not trusted gets 0, so that it cannot read the screen.
void report(TerminalState& state, const ParserParameters& parameters);

/// XTCHECKSUM: how that sum is made.
void selectExtension(TerminalState& state, const ParserParameters& parameters);

}  // namespace orvane::ChecksumFunctions
