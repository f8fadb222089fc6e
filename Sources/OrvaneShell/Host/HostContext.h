#pragma once

#include <functional>
#include <memory>

#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Workspace/AppStore.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/Verb.h"
#include "Platform/LineServer.h"

namespace orvane {

/// What the host's half of a verb works with: the stores, the language of whoever asks, and its connection. Lives for
/// one request; whoever answers later keeps copies.
struct HostContext {
    AppStore& store;
    CustomAgentStore& agents;
    L10n l10n;
    std::weak_ptr<LineServer::Connection> connection;
    /// Answers a request whose outcome was `Later`. May be kept; does nothing once the client has gone.
    std::function<void(const Outcome&)> answer;
    /// Starts the stop sequence of the host.
    std::function<void()> stop;
};

}  // namespace orvane
