#include "OrvaneCore/Agents/PromptTyping.h"

#include <algorithm>

#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::PromptTyping {

namespace {

constexpr std::string_view pasteStart = "\x1b[200~";
constexpr std::string_view pasteEnd = "\x1b[201~";

constexpr double charactersPerSecond = 20000;
constexpr double shortestDelay = 0.08;
/// Bytes; of less it cannot be told whose they are.
constexpr std::size_t shortestPart = 12;

/// A key of its own rather than text: it would interrupt, delete, or end a paste.
bool isKey(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code < ' ' && byte != '\n' && byte != '\r' && byte != '\t') || code == 0x7f;
}

/// A program reads on as keys what stands behind an escape character, also inside a paste.
std::string withoutKeys(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with(pasteStart) || rest.starts_with(pasteEnd)) {
            at += pasteEnd.size() - 1;
        } else if (!isKey(text[at])) {
            clean += text[at];
        }
    }
    return clean;
}

/// Without paste marks a carriage return is the key that sends.
std::string withLineFeeds(std::string_view text) {
    std::string lines;
    lines.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r') {
            lines += text[at];
        } else if (!text.substr(at).starts_with("\r\n")) {
            lines += '\n';
        }
    }
    return lines;
}

/// A composer breaks lines where it likes.
std::string withoutBlanks(std::string_view text) {
    std::string dense(text);
    std::erase_if(dense, [](unsigned char byte) { return byte <= ' '; });
    return dense;
}

bool standsForPaste(std::string_view draft) {
    static const Regex mark = Regex::compile(R"(^\[pasted\b[^\]]*\])", {.ignoresCase = true}).value();
    return mark.matches(draft);
}

}  // namespace

std::string bytes(std::string_view prompt, Marks marks) {
    const std::string text = withoutKeys(prompt);
    if (marks == Marks::none) return withLineFeeds(text);
    return std::string(pasteStart) + text + std::string(pasteEnd);
}

Seconds returnDelay(std::string_view prompt) {
    return Seconds(static_cast<double>(Text::characterCount(prompt)) / charactersPerSecond + shortestDelay);
}

bool isShown(std::string_view draft, std::string_view prompt) {
    const std::string shown = withoutBlanks(draft);
    const std::string whole = withoutBlanks(prompt);
    if (shown.empty()) return false;
    const bool isPart = shown.size() >= shortestPart && whole.contains(shown);
    return shown == whole || isPart || standsForPaste(Text::trimmed(draft));
}

bool completesClear(const std::optional<std::string>& draft, std::string_view inputBytes) {
    const std::size_t end = inputBytes.find_first_of("\r\n");
    if (end == std::string_view::npos) return false;
    return AgentCommand::clearsContext(draft.value_or("") + std::string(inputBytes.substr(0, end)));
}

}  // namespace orvane::PromptTyping
