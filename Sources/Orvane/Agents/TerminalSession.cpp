#include "Orvane/Agents/TerminalSession.h"

#include <utility>

#include "Platform/HostName.h"

namespace orvane {

namespace {

/// Somebody else has reaped the program: how it ended is not known, only that this is no success.
constexpr int unknownEnd = 255 << 8;

}  // namespace

TerminalSession::Screen::Screen(MainLoop& loop, MainLoop& reader, SessionProcessEvents events)
    : HeadlessTerminal(loop, reader, {.cols = hiddenCols, .rows = hiddenRows, .hostName = hostName()},
                       [onExit = std::move(events.onExit)](std::optional<int> waitStatus) {
                           onExit(waitStatus.value_or(unknownEnd));
                       }),
      onActivity_(std::move(events.onActivity)),
      onTitle_(std::move(events.onTitle)),
      onNews_(std::move(events.onNews)) {}

void TerminalSession::Screen::dataReceived(std::string_view slice) {
    HeadlessTerminal::dataReceived(slice);
    onActivity_(slice);
    if (std::exchange(hasNewTitle_, false)) onTitle_();
}

void TerminalSession::Screen::clipboardCopy(std::string_view content) {
    onNews_({TerminalNews::Clipboard{std::string(content)}});
}

void TerminalSession::Screen::notify(std::string_view title, std::string_view body) {
    onNews_({TerminalNews::Notification{.title = std::string(title), .body = std::string(body)}});
}

TerminalSession::TerminalSession(MainLoop& loop, MainLoop& reader, SessionProcessEvents events,
                                 std::optional<std::string> forcedTranscriptID)
    : screen_(loop, reader, std::move(events)), forcedTranscriptID_(std::move(forcedTranscriptID)) {}

pid_t TerminalSession::foregroundProcessGroup() const {
    return PseudoTerminalHelpers::foregroundProcessGroup(screen_.process.childfd());
}

}  // namespace orvane
