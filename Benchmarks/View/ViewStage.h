#pragma once

#include <memory>
#include <vector>

#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/ShellSetup.h"
#include "OrvaneShell/View/ViewContext.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryEnvironment.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::benchmark {

/// A workspace as a view shows it, with sessions that have terminals and no programs.
class ViewStage {
 public:
    ViewStage();
    ~ViewStage();
    ViewStage(const ViewStage&) = delete;
    ViewStage& operator=(const ViewStage&) = delete;

    /// One tab with so many panes, each with a session.
    void showPanes(int count);
    /// Projects, tabs and sessions, at least so many in all; returns how many there are.
    int fill(int entries);

    ViewContext& view() { return *view_; }
    std::vector<Terminal*> terminals();

 private:
    class Launcher;

    TemporaryEnvironment environment_;
    ManualMainLoop loop_;
    BackgroundPool pool_{1};
    SerialQueue queue_{pool_};
    PreferencesStore preferences_;
    StateFile stateFile_;
    CustomAgentStore agents_;
    std::unique_ptr<Launcher> launcher_;
    ShellSetup shell_;
    LoginCapture login_;
    std::shared_ptr<ToolsManager> tools_;
    std::shared_ptr<HistoryService> history_;
    std::shared_ptr<AppStore> store_;
    std::unique_ptr<ViewContext> view_;
};

}  // namespace orvane::benchmark
