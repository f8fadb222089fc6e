#include "OrvaneCore/History/Scan/SessionScan.h"

#include <utility>

namespace orvane {

void SessionScan::addPrompt(std::string text, std::optional<Date> at, Part part) {
    if (!seenPrompts_.insert(text).second) return;
    if (!sawPrompt) firstPromptAt = at;
    sawPrompt = true;
    (part == Part::head ? headPrompts : tailPrompts).push_back(std::move(text));
}

}  // namespace orvane
