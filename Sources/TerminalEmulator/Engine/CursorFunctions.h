#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// Control functions that move the cursor, set margins or set tabs. A movement stops at the margin that it meets from
/// inside; from outside, at the screen's edge.
namespace orvane::CursorFunctions {

void up(TerminalState& state, const ParserParameters& parameters);            ///< CUU
void down(TerminalState& state, const ParserParameters& parameters);          ///< CUD
void forward(TerminalState& state, const ParserParameters& parameters);       ///< CUF
void back(TerminalState& state, int count);                                   ///< CUB, BS; wraps back where that is on
void nextLine(TerminalState& state, const ParserParameters& parameters);      ///< CNL
void previousLine(TerminalState& state, const ParserParameters& parameters);  ///< CPL
void toColumn(TerminalState& state, const ParserParameters& parameters);      ///< CHA, HPA
void toRow(TerminalState& state, const ParserParameters& parameters);         ///< VPA
void columnsOn(TerminalState& state, const ParserParameters& parameters);     ///< HPR
void rowsOn(TerminalState& state, const ParserParameters& parameters);        ///< VPR
void toPosition(TerminalState& state, const ParserParameters& parameters);    ///< CUP, HVP

void tabForward(TerminalState& state, int count);                                  ///< HT, CHT
void tabBack(TerminalState& state, int count);                                     ///< CBT
void setTab(TerminalState& state);                                                 ///< HTS
void clearTabs(TerminalState& state, const ParserParameters& parameters);          ///< TBC
void setTabsEveryEight(TerminalState& state, const ParserParameters& parameters);  ///< DECST8C

void setRegion(TerminalState& state, const ParserParameters& parameters);         ///< DECSTBM
void setMarginsOrSave(TerminalState& state, const ParserParameters& parameters);  ///< DECSLRM, or else SCOSC

}  // namespace orvane::CursorFunctions
