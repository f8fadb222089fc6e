#pragma once

#include <vector>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "OrvaneShell/View/Painting/StyledLine.h"

/// A conversation as rows of a terminal.
namespace orvane::ThreadLines {

/// Runs of tools and thoughts take one row each; a long message keeps its beginning.
std::vector<StyledLine> of(const std::vector<TranscriptFeed::Entry>& entries, const L10n& l10n, int cols);

}  // namespace orvane::ThreadLines
