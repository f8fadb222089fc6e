#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Orvane/Agents/AgentLaunchSupport.h"
#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Agents/TerminalLauncher.h"
#include "Orvane/Agents/ToolsManager.h"
#include "Orvane/History/HistoryService.h"
#include "Orvane/Workspace/AppStore.h"
#include "Orvane/Workspace/StopSequence.h"
#include "OrvaneShell/Host/RequestRouter.h"
#include "OrvaneShell/View/ViewHost.h"
#include "Platform/AsioMainLoop.h"
#include "Platform/BackgroundPool.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Environment.h"
#include "Platform/FolderWatch.h"
#include "Platform/InstanceLock.h"
#include "Platform/LineServer.h"
#include "Platform/PreferencesStore.h"
#include "Platform/SerialQueue.h"
#include "Platform/SignalWatch.h"

namespace orvane {

/// The host process: everything that runs as long as the program does, in the order in which it stands on each other.
class Host {
 public:
    enum class Mode {
        foreground,  ///< of a terminal or a service manager: SIGHUP stops it too
        background,  ///< started by a command, in a session of its own
    };

    Host(Mode mode, Environment environment, InstanceLock lock, DiagnosticLog log);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Loads the workspace and listens. The error is a line for a person.
    std::expected<void, std::string> start();
    /// Serves until the host is told to stop, and stops.
    void run();

 private:
    std::expected<void, SystemError> listen();
    void keepPlaces();
    bool keepLock();
    bool keepSocket();
    void notePreference(std::string_view key);
    void watchFolder(std::unique_ptr<FolderWatch>& watch, const std::string& folder);
    void stop();

    Mode mode_;
    Environment environment_;
    InstanceLock lock_;
    DiagnosticLog log_;
    AsioMainLoop loop_;
    BackgroundPool pool_;
    SerialQueue fileQueue_;
    PreferencesStore preferences_;
    L10n l10n_;
    StateFile stateFile_;
    CustomAgentStore agents_;
    AgentLaunchSupport launchSupport_;
    ShellSetup shellSetup_;
    LoginCapture loginCapture_;
    TerminalLauncher launcher_;
    std::shared_ptr<ToolsManager> tools_;
    std::shared_ptr<AppStore> store_;
    std::shared_ptr<HistoryService> history_;
    StopSequence stopSequence_;
    ViewHost views_;
    RequestRouter router_;
    LineServer server_;
    std::string socketPath_;
    bool isListening_ = false;  ///< and others were told where
    std::unique_ptr<FolderWatch> lockWatch_;
    std::unique_ptr<FolderWatch> socketWatch_;
    Registration placesRetry_;
    Registration preferencesWatch_;
    std::optional<SignalWatch> signals_;
};

/// Carries "orvane host" out: becomes the host and serves until it is stopped, or wakes the host that runs already.
/// Returns the exit status.
int runHost(Host::Mode mode, const Environment& environment, const std::function<void(const std::string&)>& tellReady,
            const std::function<void(const std::string&)>& tellFailure);

}  // namespace orvane
