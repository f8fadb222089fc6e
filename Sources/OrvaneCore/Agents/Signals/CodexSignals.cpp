#include "OrvaneCore/Agents/Signals/CodexSignals.h"

#include <string>
#include <vector>

#include "OrvaneCore/Support/Regex.h"

namespace orvane {

namespace {

constexpr std::size_t rowsAboveComposer = 16;  ///< prompts that are queued stand between

std::vector<std::string> rowsOf(std::string_view text) {
    std::vector<std::string> rows;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        rows.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return rows;
}

}  // namespace

bool CodexSignals::isActionRequired(std::string_view title) {
    return title.contains("Action Required");
}

bool CodexSignals::isBusy(const AgentLayout& layout) {
    static const Regex turn = *Regex::compile(
        R"(^\S{1,2} .*\((?:\d+h ?)?(?:\d+m ?)?\d+s\s?[•·]\s?esc\b[^)]*(?:…|\)(?: [·•].*)?)$)", {.ignoresCase = true});
    static const Regex queue = *Regex::compile(R"(^\S{1,2} Queued\b)", {.ignoresCase = true});
    if (layout.dialog) return false;
    const AgentRowSpan above = layout.aboveComposer(rowsAboveComposer);
    for (std::size_t row = above.size(); row-- > 0;) {
        if (!above[row].isText()) continue;
        if (turn.matches(above[row].content())) return true;
        if (AgentRowText::startsMessage(above[row]) && !queue.matches(above[row].text)) return false;
    }
    return false;
}

std::optional<ApprovalPolicy::Request> CodexNotificationSignals::request(std::string_view text) {
    return request(AgentLayout::of(SessionKind::codex, rowsOf(text)));
}

bool CodexNotificationSignals::awaitsUser(const AgentLayout& layout) {
    return layout.dialog || layout.endsInDecisionHint();
}

std::optional<ApprovalPolicy::Request> CodexNotificationSignals::request(const AgentLayout& layout) {
    if (!layout.dialog) return std::nullopt;
    return layout.dialog->request({"would you like to", "do you want to", "allow "});
}

}  // namespace orvane
