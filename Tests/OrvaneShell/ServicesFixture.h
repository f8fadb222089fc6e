#pragma once

#include <memory>

#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/ShellSetup.h"
#include "Orvane/Agents/ToolsManager.h"
#include "Orvane/History/HistoryService.h"
#include "Orvane/StoreFixture.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane::testing {

/// A store with what else a host has. The home folder is that of the test; there is no shell.
class ServicesFixture : public StoreFixture {
 protected:
    ShellSetup shell{.environment = {{"HOME", folder.path()}}, .shell = folder.path("no-shell")};
    LoginCapture login{loop, shell};
    std::shared_ptr<ToolsManager> tools = std::make_shared<ToolsManager>(
        ToolsManager::Services{.loop = loop, .pool = pool, .l10n = {}, .shell = shell, .loginCapture = login});
    std::shared_ptr<HistoryService> history =
        std::make_shared<HistoryService>(HistoryService::Services{.loop = loop,
                                                                  .pool = pool,
                                                                  .fileQueue = queue,
                                                                  .home = folder.path(),
                                                                  .indexPath = folder.path("history.json")});

    ViewContext::Services viewServices() {
        return {.store = *store, .tools = *tools, .agents = agents, .history = *history, .preferences = preferences};
    }
};

}  // namespace orvane::testing
