#include "Orvane/Agents/TerminalSession.h"

#include <utility>

#include "Platform/HostName.h"

namespace orvane {

namespace {

constexpr int neverStarted = -1;

}  // namespace

TerminalSession::Screen::Screen(MainLoop& loop, MainLoop& reader, SessionProcessEvents events)
    : HeadlessTerminal(loop, reader, {.cols = hiddenCols, .rows = hiddenRows, .hostName = hostName()},
                       [onExit = std::move(events.onExit)](std::optional<int> waitStatus) {
                           onExit(waitStatus.value_or(neverStarted));
                       }),
      onActivity_(std::move(events.onActivity)) {}

void TerminalSession::Screen::dataReceived(std::string_view slice) {
    HeadlessTerminal::dataReceived(slice);
    onActivity_();
}

TerminalSession::TerminalSession(MainLoop& loop, MainLoop& reader, SessionProcessEvents events,
                                 std::optional<std::string> forcedTranscriptID)
    : screen_(loop, reader, std::move(events)), forcedTranscriptID_(std::move(forcedTranscriptID)) {}

bool TerminalSession::start(const LocalProcess::Start& start) {
    screen_.process.startProcess(start);
    return screen_.process.running();
}

pid_t TerminalSession::foregroundProcessGroup() const {
    return PseudoTerminalHelpers::foregroundProcessGroup(screen_.process.childfd());
}

}  // namespace orvane
