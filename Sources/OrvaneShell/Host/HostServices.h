#pragma once

#include <functional>

#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Agents/ToolsManager.h"
#include "Orvane/History/HistoryService.h"
#include "Orvane/Workspace/AppStore.h"
#include "OrvaneShell/CommandLine/Verb.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// Serves the verb `view`: takes the terminal that comes with the request as its descriptors, standard input first, and
/// draws on it until it answers. It begins a stream, whose first line {"attached":true} goes out before anything is
/// written to the terminal, with "plain":true when that will be lines and no drawing; what the client sends is
/// {"resize":true} (the size has changed), {"redraw":true} (somebody else had the terminal in between) and
/// {"detach":true}. Before it answers, with {"reason":"detached"}, "replaced" or "quit", it has written its last byte.
using ViewOpening = std::function<Outcome(HostContext& host, const JSONObject& arguments)>;

/// What the host's half of the verbs may use; all of it outlives them.
struct HostServices {
    AppStore& store;
    CustomAgentStore& agents;
    ToolsManager& tools;
    HistoryService& history;
    PreferencesStore& preferences;
    /// Empty in a host without a view.
    ViewOpening openView = {};
};

}  // namespace orvane
