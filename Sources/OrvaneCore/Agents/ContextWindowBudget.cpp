#include "OrvaneCore/Agents/ContextWindowBudget.h"

#include <algorithm>

#include "OrvaneCore/Agents/ModelName.h"

namespace orvane::ContextWindowBudget {

namespace {

/// What Codex keeps of the window for itself, in tokens.
constexpr std::int64_t codexReserve = 12'000;

constexpr std::int64_t claudeWindow = 200'000;
constexpr std::int64_t largeWindow = 1'000'000;

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

std::optional<std::int64_t> window(TranscriptProvider provider, std::string_view model,
                                   std::optional<std::int64_t> reported, std::int64_t usedTokens) {
    if (model.ends_with(ModelName::largeWindowSuffix)) return largeWindow;
    if (reported) return reported;
    if (provider != TranscriptProvider::claude) return std::nullopt;
    return usedTokens > claudeWindow ? largeWindow : claudeWindow;
}

}  // namespace orvane::ContextWindowBudget
