#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// Control functions that erase, insert, delete and shift. What they leave blank has the background in use. Each ends a
/// pending wrap.
namespace orvane::EditFunctions {

/// Whether an erasing function leaves cells that DECSCA has protected.
enum class Erasing { plain, selective };

void eraseInDisplay(TerminalState& state, const ParserParameters& parameters, Erasing erasing);  ///< ED, DECSED
void eraseInLine(TerminalState& state, const ParserParameters& parameters, Erasing erasing);     ///< EL, DECSEL
void eraseCharacters(TerminalState& state, const ParserParameters& parameters);                  ///< ECH
void insertCharacters(TerminalState& state, const ParserParameters& parameters);                 ///< ICH
void deleteCharacters(TerminalState& state, const ParserParameters& parameters);                 ///< DCH
void insertLines(TerminalState& state, const ParserParameters& parameters);                      ///< IL
void deleteLines(TerminalState& state, const ParserParameters& parameters);                      ///< DL
void scrollUp(TerminalState& state, const ParserParameters& parameters);                         ///< SU
void scrollDown(TerminalState& state, const ParserParameters& parameters);                       ///< SD
void shiftLeft(TerminalState& state, const ParserParameters& parameters);                        ///< SL
void shiftRight(TerminalState& state, const ParserParameters& parameters);                       ///< SR
void insertColumns(TerminalState& state, const ParserParameters& parameters);                    ///< DECIC
void deleteColumns(TerminalState& state, const ParserParameters& parameters);                    ///< DECDC
void forwardIndex(TerminalState& state);                                                         ///< DECFI
void backIndex(TerminalState& state);                                                            ///< DECBI
void alignmentPattern(TerminalState& state);                                                     ///< DECALN
void setRenderMode(TerminalState& state, RenderLineMode mode);  ///< DECSWL, DECDWL, DECDHL

}  // namespace orvane::EditFunctions
