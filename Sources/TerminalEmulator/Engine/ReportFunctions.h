#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// What the terminal answers about itself.
namespace orvane::ReportFunctions {

void sendPrimaryAttributes(TerminalState& state);                                    ///< DECID
void primaryAttributes(TerminalState& state, const ParserParameters& parameters);    ///< DA1, CSI c
void secondaryAttributes(TerminalState& state, const ParserParameters& parameters);  ///< DA2, CSI > c
void tertiaryAttributes(TerminalState& state, const ParserParameters& parameters);   ///< DA3, CSI = c
void version(TerminalState& state, const ParserParameters& parameters);              ///< XTVERSION, CSI > q

void deviceStatus(TerminalState& state, const ParserParameters& parameters);         ///< DSR, CSI n
void privateDeviceStatus(TerminalState& state, const ParserParameters& parameters);  ///< DECDSR, CSI ? n

void terminalParameters(TerminalState& state, const ParserParameters& parameters);     ///< DECREQTPARM, CSI x
void graphicsAttribute(TerminalState& state, const ParserParameters& parameters);      ///< XTSMGRAPHICS, CSI ? S
void displayedExtent(TerminalState& state, const ParserParameters& parameters);        ///< DECRQDE, CSI " v
void preferredSupplemental(TerminalState& state, const ParserParameters& parameters);  ///< DECRQUPSS, CSI & u

void selectConformance(TerminalState& state, const ParserParameters& parameters);  ///< DECSCL, CSI " p

}  // namespace orvane::ReportFunctions
