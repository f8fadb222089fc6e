#include "OrvaneCore/History/Scan/SessionScan.h"

#include <utility>

namespace orvane {

void SessionScan::addPrompt(std::string text, std::optional<Date> at, Part part) {
    if (!seenPrompts_.insert(text).second) return;
    if (!sawPrompt) firstPromptAt = at;
    sawPrompt = true;
    (part == Part::head ? headPrompts : tailPrompts).push_back(std::move(text));
}

void SessionScan::addTokens(std::optional<std::int64_t> count) {
    constexpr std::int64_t most = 1'000'000'000;
    if (count && *count > 0 && *count < most) tokens += *count;
}

}  // namespace orvane
