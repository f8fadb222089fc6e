#pragma once

#include <string>
#include <string_view>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Transcripts/TraceReport.h"

namespace orvane::TraceText {

/// The report as a person reads it in a terminal, below the conversation's title. Ends with a line end.
std::string text(std::string_view title, const TraceReport& report, const L10n& l10n);

}  // namespace orvane::TraceText
