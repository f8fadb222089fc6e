#pragma once

#include <string_view>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/Host/HostContext.h"

/// The agents' programs, as the verbs that tell of them describe and print them.
namespace orvane::ToolsTable {

/// Null for one that is not ours to install.
const AgentTool* toolNamed(std::string_view id);

JsonValue describe(const AgentTool& tool, const ToolsManager& tools);
/// All of them: `tools`, and `npm`, `complete` and `shell` of the login shell that was asked.
JsonValue describe(const ToolsManager& tools);

/// The table, what to do about tools that cannot be used yet, and what could not be found out.
void print(ClientContext& client, const JSONObject& found);
/// Only the last, on the standard error.
void printGaps(ClientContext& client, const JSONObject& found);

}  // namespace orvane::ToolsTable
