#include "OrvaneCore/Agents/Signals/GeminiPromptSignals.h"

#include <algorithm>

#include "OrvaneCore/Agents/Signals/Glyphs.h"

namespace orvane::GeminiPromptSignals {

namespace {

constexpr std::size_t rowsAboveComposer = 12;

bool isSpinner(const AgentRow& row) {
    return row.isText() && row.boxes == 0 && Glyphs::isBraille(Glyphs::first(row.content())) &&
           (row.text.contains("…") || row.text.contains("...") || row.text.contains("esc to cancel"));
}

}  // namespace

bool isBusy(const AgentLayout& layout) {
    return !layout.dialog && std::ranges::any_of(layout.aboveComposer(rowsAboveComposer), isSpinner);
}

bool awaitsUser(const AgentLayout& layout) {
    return layout.dialog || layout.endsInDecisionHint();
}

std::optional<ApprovalPolicy::Request> request(const AgentLayout& layout) {
    if (!layout.dialog) return std::nullopt;
    return layout.dialog->request({"allow execution", "apply this change", "do you want to", "allow "});
}

}  // namespace orvane::GeminiPromptSignals
