#pragma once

#include <functional>
#include <memory>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/Verb.h"
#include "OrvaneShell/Host/HostServices.h"
#include "Platform/LineServer.h"

namespace orvane {

/// What the host's half of a verb works with: the services, the language of whoever asks, and its connection. Lives for
/// one request; whoever answers later keeps copies.
struct HostContext {
    AppStore& store;
    CustomAgentStore& agents;
    ToolsManager& tools;
    HistoryService& history;
    PreferencesStore& preferences;
    const ViewOpening& openView;
    L10n l10n;
    std::weak_ptr<LineServer::Connection> connection;
    /// Answers a request whose outcome was `Later`, or ends one that was `Streaming`. May be kept; does nothing once
    /// the client has gone.
    std::function<void(const Outcome&)> answer;
    /// Starts the stop sequence of the host.
    std::function<void()> stop;
};

}  // namespace orvane
