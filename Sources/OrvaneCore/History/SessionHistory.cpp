#include "OrvaneCore/History/SessionHistory.h"

#include <utility>
#include <vector>

#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::SessionHistory {

namespace {

std::string_view resuming(Provider provider) {
    switch (provider) {
        case Provider::claude:
            return "claude --resume ";
        case Provider::codex:
            return "codex resume ";
        case Provider::gemini:
            return "gemini --resume ";
    }
    std::unreachable();
}

}  // namespace

std::optional<std::string> resumeCommand(Provider provider, std::string_view id) {
    const std::string_view trimmed = Text::trimmed(id);
    if (trimmed.empty()) return std::nullopt;
    return std::string(resuming(provider)) + shellQuoted(trimmed);
}

std::optional<std::string> resumeIdentifier(std::string_view inCommand) {
    std::vector<std::string> words = shellWords(inCommand);
    for (std::size_t index = 0; index < words.size(); ++index) {
        const bool isSubcommand = index > 0 && words[index] == "resume";
        if (words[index] != "--resume" && !isSubcommand) continue;
        if (index + 1 == words.size()) return std::nullopt;
        std::string& id = words[index + 1];
        if (id.empty() || id.starts_with('-')) return std::nullopt;
        return std::move(id);
    }
    return std::nullopt;
}

}  // namespace orvane::SessionHistory
