#include "OrvaneCore/Agents/ContextWindowBudget.h"

#include <algorithm>

namespace orvane::ContextWindowBudget {

namespace {

/// What Codex keeps of the window for itself, in tokens.
constexpr std::int64_t codexReserve = 12'000;

double ratio(std::int64_t used, std::int64_t room) {
    if (room < 1) return 0;
    return std::min(static_cast<double>(std::max<std::int64_t>(used, 0)) / static_cast<double>(room), 1.0);
}

}  // namespace

double usedFraction(std::int64_t usedTokens, std::int64_t reportedWindow, TranscriptProvider provider) {
    if (reportedWindow < 1) return 0;
    switch (provider) {
        case TranscriptProvider::codex:
            return ratio(usedTokens - codexReserve, std::max(reportedWindow, codexReserve + 1) - codexReserve);
        case TranscriptProvider::claude:
            // It compacts by itself at four fifths; divided first, the largest of windows does not overflow.
            return ratio(usedTokens, reportedWindow / 5 * 4 + reportedWindow % 5 * 4 / 5);
        case TranscriptProvider::gemini:
            return ratio(usedTokens, reportedWindow);
    }
    return 0;
}

}  // namespace orvane::ContextWindowBudget
