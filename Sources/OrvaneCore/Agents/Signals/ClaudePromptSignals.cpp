#include "OrvaneCore/Agents/Signals/ClaudePromptSignals.h"

#include <algorithm>
#include <vector>

#include "OrvaneCore/Agents/Signals/ChoiceRow.h"
#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Agents/Signals/KeyHints.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::ClaudePromptSignals {

namespace {

constexpr int rowsOfASpinner = 3;
constexpr std::size_t rowsAboveComposer = 14;  ///< the list of a plan's steps stands below the spinner

/// Rows of a dialog and of what stands at the bottom without a turn running.
bool neverMeansBusy(const AgentRow& row) {
    return AgentRowText::startsPrompt(row) || KeyHints::decides(row.text) || row.text.contains("? for shortcuts") ||
           ChoiceRow::parse(row);
}

bool meansBusy(const AgentRow& row) {
    return row.text.contains("…") || row.text.contains("...") || KeyHints::interrupts(row.text);
}

bool isBusyRows(AgentRowSpan rows) {
    int written = 0;
    for (std::size_t row = rows.size(); row-- > 0 && written < rowsOfASpinner;) {
        if (!rows[row].isText()) continue;
        ++written;
        if (!neverMeansBusy(rows[row]) && meansBusy(rows[row])) return true;
    }
    return false;
}

/// "✽ Considering… (20s · ↓ 30 tokens)", "✻ API error · retrying in 3s": a glyph at the left edge. Words of the agent
/// are indented.
bool isSpinner(const AgentRow& row) {
    const std::string_view glyph = Glyphs::first(row.text);
    if (!row.isText() || row.indent > 0 || glyph.empty() || Glyphs::isAsciiAlphanumeric(glyph.front())) return false;
    if (!row.text.substr(glyph.size()).starts_with(' ')) return false;
    return meansBusy(row) || row.text.contains("retrying in");
}

}  // namespace

bool isBusy(std::span<const std::string> screenRows) {
    return isBusyRows(AgentRowText::reading(screenRows));
}

bool awaitsUser(std::span<const std::string> screenRows) {
    return awaitsUser(AgentLayout::of(SessionKind::claude, screenRows));
}

std::optional<ApprovalPolicy::Request> request(std::span<const std::string> inScreenRows) {
    return request(AgentLayout::of(SessionKind::claude, inScreenRows));
}

bool isBusy(const AgentLayout& layout) {
    if (layout.dialog) return false;
    const auto interrupts = [](const AgentRow& row) { return KeyHints::interrupts(row.text); };
    if (std::ranges::any_of(layout.belowComposer(), interrupts)) return true;
    const AgentRowSpan above = layout.aboveComposer(rowsAboveComposer);
    for (std::size_t row = above.size(); row-- > 0;) {
        if (AgentRowText::startsMessage(above[row])) return false;
        if (isSpinner(above[row])) return true;
    }
    return false;
}

bool awaitsUser(const AgentLayout& layout) {
    return layout.dialog || layout.endsInDecisionHint();
}

std::optional<ApprovalPolicy::Request> request(const AgentLayout& layout) {
    if (!layout.dialog) return std::nullopt;
    return layout.dialog->request({"do you want to"});
}

}  // namespace orvane::ClaudePromptSignals
