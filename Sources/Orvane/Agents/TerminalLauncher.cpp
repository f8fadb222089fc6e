#include "Orvane/Agents/TerminalLauncher.h"

#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <optional>
#include <utility>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Agents/TerminalSession.h"
#include "OrvaneCore/Agents/LaunchPlan.h"
#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"

namespace orvane {

namespace {

bool isExecutable(const std::string& path) {
    return access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    return names;
}

/// Programs told of a locale that is not installed fall back to ASCII.
std::string usableLocale() {
    std::string preferred = "en_US.UTF-8";
    const locale_t locale = newlocale(LC_CTYPE_MASK, preferred.c_str(), nullptr);
    if (locale == nullptr) return "C.UTF-8";
    freelocale(locale);
    return preferred;
}

std::vector<std::string> toolFoldersOf(const Environment& environment) {
    const std::string home = variable(environment, "HOME");
    if (home.empty()) return {};
    return ToolPathRescue::hosting(ToolPathRescue::candidates(home, namesIn), isExecutable);
}

/// The user's own agent brings its command along.
std::optional<std::string> commandOf(const SessionController::Identity& identity) {
    if (identity.command) return identity.command;
    return identity.agentSpec ? std::optional(identity.agentSpec->command) : std::nullopt;
}

}  // namespace

TerminalLauncher::TerminalLauncher(Setup setup)
    : setup_(std::move(setup)),
      locale_(usableLocale()),
      toolFolders_(toolFoldersOf(setup_.environment)),
      loginCapture_(setup_.loop, setup_.shell, setup_.environment, toolFolders_) {}

std::string TerminalLauncher::shellOf(const Environment& environment) {
    return LaunchShell::choose(variable(environment, "SHELL"), isExecutable);
}

std::unique_ptr<SessionProcess> TerminalLauncher::launch(const SessionController& session,
                                                         SessionProcessEvents events) {
    const SessionController::Identity& identity = session.identity();
    LaunchAdditions additions = setup_.support.additions(session);
    auto plan = LaunchPlan::compose({.kind = identity.kind,
                                     .command = commandOf(identity),
                                     .shell = setup_.shell,
                                     .baseEnvironment = LocalProcess::defaultEnvironment(setup_.environment),
                                     .locale = locale_,
                                     .loginEnvironment = loginCapture_.entries(),
                                     .toolFolders = toolFolders_,
                                     .browserVariables = std::move(additions.browserVariables),
                                     .browserPrompt = std::move(additions.browserPrompt),
                                     .mcpInjection = std::move(additions.mcpInjection),
                                     .hookFeed = std::move(additions.hookFeed),
                                     .freshTranscriptID = Uuid::random()});
    if (!plan) return nullptr;
    auto process = std::make_unique<TerminalSession>(setup_.loop, reader_.loop(), std::move(events),
                                                     std::move(plan->forcedTranscriptID));
    const bool isStarted = process->start({.executable = std::move(plan->executable),
                                           .args = std::move(plan->arguments),
                                           .environment = std::move(plan->environment),
                                           .execName = {},
                                           .currentDirectory = identity.projectPath});
    if (!isStarted) return nullptr;
    return process;
}

}  // namespace orvane
