#include "OrvaneCore/Agents/ResumeIntent.h"

#include <algorithm>
#include <array>
#include <vector>

#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

ResumeIntent ResumeIntent::of(std::string_view command) {
    constexpr std::array<std::string_view, 5> continuing = {"--continue", "-c", "--resume", "-r", "resume"};
    const std::vector<std::string> words = shellWords(command);
    const auto holds = [&](std::string_view word) { return std::ranges::find(words, word) != words.end(); };
    const auto named = SessionHistory::resumeIdentifier(command);
    // A fork goes on in a file of its own.
    if (named && !holds("--fork-session")) return {.id = named, .continuesOlder = !Uuid::parse(*named)};
    return {.continuesOlder = named || std::ranges::any_of(continuing, holds)};
}

}  // namespace orvane
