#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvaneShell/Host/HostContext.h"

namespace orvane {

/// Answers a request once a session has come where somebody waits for it, or cannot get there any more, or the time is
/// up. It goes with its connection.
class SessionWait : public std::enable_shared_from_this<SessionWait> {
 public:
    /// Called after every change of the store; gives the answer when it is time. The session is null once it is closed.
    using Test = std::function<std::optional<Outcome>(const SessionController* session)>;

    /// Answers now or later. `limit` in seconds; none waits for ever, and a limit that is reached is answered with
    /// {"timedOut":true}.
    static Outcome start(HostContext& host, const Uuid& session, Test test, std::optional<double> limit);

 private:
    SessionWait(const HostContext& host, const Uuid& session, Test test);

    void look();
    void finish(const Outcome& outcome);

    AppStore& store_;
    Uuid session_;
    Test test_;
    std::function<void(const Outcome&)> answer_;
    Registration changes_;
    Registration timeout_;
};

}  // namespace orvane
