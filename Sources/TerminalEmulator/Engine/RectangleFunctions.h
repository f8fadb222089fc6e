#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// The rectangular area operations of the VT400. Places count from the region's corner under DECOM. Pages are ignored,
/// for there is one.
namespace orvane::RectangleFunctions {

/// Rows and columns from 0, last ones included, inside the screen.
struct Area {
    int top = 0;
    int left = 0;
    int bottom = 0;
    int right = 0;
};

/// Of four parameters from `first` on: top, left, bottom, right. Left out, they mean all of the screen. Nothing when it
/// is empty.
std::optional<Area> areaOf(const TerminalState& state, const ParserParameters& parameters, std::size_t first);

void copy(TerminalState& state, const ParserParameters& parameters);               ///< DECCRA
void fill(TerminalState& state, const ParserParameters& parameters);               ///< DECFRA
void erase(TerminalState& state, const ParserParameters& parameters);              ///< DECERA
void eraseUnprotected(TerminalState& state, const ParserParameters& parameters);   ///< DECSERA
void changeAttributes(TerminalState& state, const ParserParameters& parameters);   ///< DECCARA
void reverseAttributes(TerminalState& state, const ParserParameters& parameters);  ///< DECRARA
void selectExtent(TerminalState& state, const ParserParameters& parameters);       ///< DECSACE

}  // namespace orvane::RectangleFunctions
