#pragma once

#include <vector>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Transcripts/LiveTrace.h"
#include "OrvaneShell/View/Painting/StyledLine.h"

/// What an agent did as rows of a terminal.
namespace orvane::TraceLines {

/// Counts, then what runs, what failed, what was sensitive, and the files.
std::vector<StyledLine> of(const LiveTrace& report, const L10n& l10n, int cols);

}  // namespace orvane::TraceLines
