#pragma once

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Selection/SelectionRange.h"

namespace orvane {

/// The word that a cell is part of, over wrapped rows, at most `maximumWordRows` of them to each side. Letters, digits
/// and the marks of paths and URLs make words; blanks of a row belong together; any other character is a word of its
/// own.
SelectionRange wordAt(const Buffer& buffer, const ClusterTable& clusters, Position at);

inline constexpr int maximumWordRows = 1024;

}  // namespace orvane
