#pragma once

#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Agents/ToolsManager.h"
#include "Orvane/Workspace/AppStore.h"

namespace orvane {

/// What the host's half of the verbs may use; all of it outlives them.
struct HostServices {
    AppStore& store;
    CustomAgentStore& agents;
    ToolsManager& tools;
};

}  // namespace orvane
