#include "OrvaneCore/Agents/Signals/AgentScreen.h"

#include <algorithm>
#include <span>
#include <utility>

#include "OrvaneCore/Agents/Signals/AgentLayout.h"
#include "OrvaneCore/Agents/Signals/AgentTitle.h"
#include "OrvaneCore/Agents/Signals/ClaudePromptSignals.h"
#include "OrvaneCore/Agents/Signals/CodexSignals.h"
#include "OrvaneCore/Agents/Signals/GeminiPromptSignals.h"
#include "OrvaneCore/Agents/Signals/TerminalComposer.h"

namespace orvane {

namespace {

/// What one agent's recognisers are asked.
struct Signals {
    bool (*isBusy)(const AgentLayout&);
    bool (*awaitsUser)(const AgentLayout&);
    std::optional<ApprovalPolicy::Request> (*request)(const AgentLayout&);
};

std::optional<Signals> signalsOf(SessionKind kind) {
    switch (kind) {
        case SessionKind::claude:
            return Signals{ClaudePromptSignals::isBusy, ClaudePromptSignals::awaitsUser, ClaudePromptSignals::request};
        case SessionKind::codex:
            return Signals{CodexSignals::isBusy, CodexNotificationSignals::awaitsUser,
                           CodexNotificationSignals::request};
        case SessionKind::gemini:
            return Signals{GeminiPromptSignals::isBusy, GeminiPromptSignals::awaitsUser, GeminiPromptSignals::request};
        case SessionKind::shell:
        case SessionKind::service:
        case SessionKind::custom:
            return std::nullopt;
    }
    return std::nullopt;
}

SilenceVerdict verdictOf(const AgentScreenReading& reading) {
    if (reading.dialogUp) return SilenceVerdict::needsUser;
    if (reading.busy) return SilenceVerdict::working;
    return reading.draft ? SilenceVerdict::finished : reading.title;
}

void readDialog(AgentScreenReading& reading, PrintedDialog dialog) {
    reading.takesSeveral = dialog.takesSeveral();
    reading.selectedChoice = dialog.list.selectedNumber();
    reading.question = std::move(dialog.head.question);
    reading.options = std::move(dialog.list.options);
}

}  // namespace

AgentScreenReading AgentScreen::read() const {
    AgentScreenReading reading;
    const std::optional<Signals> signals = signalsOf(kind);
    if (!signals) {
        reading.draft = TerminalComposer::draft(rows, dimmed);
        return reading;
    }
    AgentLayout layout = AgentLayout::of(kind, rows, columns);
    reading.title = AgentTitle::verdict(kind, title);
    reading.dialogUp = signals->awaitsUser(layout) || reading.title == SilenceVerdict::needsUser;
    reading.busy = !reading.dialogUp && (reading.title == SilenceVerdict::working || signals->isBusy(layout));
    reading.request = signals->request(layout);
    reading.draft = layout.draft(rows, dimmed);
    if (layout.dialog) readDialog(reading, std::move(*layout.dialog));
    reading.verdict = verdictOf(reading);
    return reading;
}

}  // namespace orvane
