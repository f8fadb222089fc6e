#pragma once

#include "OrvaneShell/View/OuterTerminal.h"
#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// Whether terminals disagree about how many columns the character takes, so that nobody knows where their cursor is
/// behind it: emoji, flags, characters with variation selectors or joiners, private use. Accents on letters and
/// ideographs are taken for granted.
bool isWidthDisputed(const StoredCell& cell, const ClusterTable& clusters, const OuterTerminal& outer);

}  // namespace orvane
