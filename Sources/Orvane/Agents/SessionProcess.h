#pragma once

#include <sys/types.h>

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Orvane/Agents/LaunchFailure.h"
#include "Orvane/Agents/TerminalNews.h"

namespace orvane {

class HeadlessTerminal;
class SessionController;

/// The program behind a session that is no chat. Main thread only.
class SessionProcess {
 public:
    SessionProcess() = default;
    SessionProcess(const SessionProcess&) = delete;
    SessionProcess& operator=(const SessionProcess&) = delete;
    virtual ~SessionProcess() = default;

    /// 0 when it never started, and once it has been reaped: the number may then name a stranger.
    virtual pid_t processId() const = 0;
    /// The process group in the foreground of its terminal; 0 when it has no terminal.
    virtual pid_t foregroundProcessGroup() const = 0;
    /// Lets go of the program after its groups were signalled; no event comes any more.
    virtual void terminate() = 0;
    /// Its terminal; null for one that has none.
    virtual HeadlessTerminal* terminal() { return nullptr; }
    /// The id that its transcript was told to have, in lower case; none when the program chooses.
    virtual std::optional<std::string> forcedTranscriptID() const { return std::nullopt; }
};

struct SessionProcessEvents {
    /// The program has written these bytes, and its terminal shows them.
    std::function<void(std::string_view bytes)> onActivity;
    /// The program has given its terminal a title, which may be the same; after the bytes around it are shown.
    std::function<void()> onTitle;
    std::function<void(const TerminalNews& news)> onNews;
    /// The wait status of the program that ended.
    std::function<void(int)> onExit;
};

/// Starts the programs of sessions.
class SessionLauncher {
 public:
    SessionLauncher() = default;
    SessionLauncher(const SessionLauncher&) = delete;
    SessionLauncher& operator=(const SessionLauncher&) = delete;
    virtual ~SessionLauncher() = default;

    /// No event comes before it returns, and after a failure none at all.
    [[nodiscard]] virtual std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(
        const SessionController& session, SessionProcessEvents events) = 0;
};

}  // namespace orvane
