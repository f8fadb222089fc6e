#include "Orvane/Agents/AgentTerminal.h"

#include <algorithm>

#include "Orvane/Agents/AgentScreenCapture.h"
#include "Orvane/Agents/SessionController.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

AgentTerminal::AgentTerminal(const SessionController& session, MainLoop& loop)
    : session_(session), loop_(loop), startedAt_(loop.now()), lastOutputTime_(loop.wallTime()) {}

void AgentTerminal::noteOutput(std::string_view bytes) {
    ++revision_;
    if (!scanner_.scan(bytes).printable) return;
    lastOutputAt_ = loop_.now();
    lastOutputTime_ = loop_.wallTime();
}

const AgentScreenReading& AgentTerminal::reading() {
    const HeadlessTerminal* headless = terminal();
    if (headless == nullptr || readRevision_ == revision_) return reading_;
    readRevision_ = revision_;
    reading_ = captureAgentScreen(headless->terminal, session_.identity().kind).read();
    return reading_;
}

std::string AgentTerminal::lastRows(std::size_t count) {
    const HeadlessTerminal* headless = terminal();
    if (headless == nullptr) return {};
    std::vector<std::string> rows = captureAgentScreen(headless->terminal, session_.identity().kind).rows;
    while (!rows.empty() && rows.back().empty())
        rows.pop_back();
    std::string text;
    for (std::size_t row = rows.size() - std::min(rows.size(), count); row < rows.size(); ++row)
        text += rows[row] + '\n';
    return text;
}

const std::string& AgentTerminal::title() const {
    static const std::string none;
    const HeadlessTerminal* headless = terminal();
    return headless == nullptr ? none : headless->terminal.terminalTitle();
}

bool AgentTerminal::takesPastes() const {
    const HeadlessTerminal* headless = terminal();
    return session_.identity().kind != SessionKind::custom ||
           (headless != nullptr && headless->terminal.modes().bracketedPasteMode);
}

void AgentTerminal::write(std::string_view bytes) {
    HeadlessTerminal* headless = terminal();
    if (headless != nullptr && !session_.hasExited()) headless->send(bytes);
}

std::optional<bool> AgentTerminal::hasReadInput() const {
    const HeadlessTerminal* headless = terminal();
    if (headless == nullptr) return std::nullopt;
    const auto unread = PseudoTerminalHelpers::unreadInput(headless->process.childfd());
    return unread ? std::optional(*unread == 0) : std::nullopt;
}

HeadlessTerminal* AgentTerminal::terminal() const {
    return session_.terminal();
}

}  // namespace orvane
