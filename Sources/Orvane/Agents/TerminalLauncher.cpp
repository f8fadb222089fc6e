#include "Orvane/Agents/TerminalLauncher.h"

#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <optional>
#include <utility>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Agents/TerminalSession.h"
#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "Platform/Files.h"

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

using Reason = LaunchFailure::Reason;

Reason reasonOf(LaunchPlan::Error error) {
    switch (error) {
        case LaunchPlan::Error::commandHasNul:
            return Reason::commandHasNul;
        case LaunchPlan::Error::commandTooLong:
            return Reason::commandTooLong;
    }
    std::unreachable();
}

std::unexpected<LaunchFailure> failure(Reason reason, std::optional<SystemError> error = {}) {
    return std::unexpected(LaunchFailure{.reason = reason, .error = std::move(error)});
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

std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> TerminalLauncher::launch(const SessionController& session,
                                                                                       SessionProcessEvents events) {
    const std::string& folder = session.identity().projectPath;
    if (auto opened = openFolder(folder); !opened) return failure(Reason::folderUnusable, std::move(opened.error()));
    auto plan = planFor(session);
    if (!plan) return failure(reasonOf(plan.error()));
    auto process = std::make_unique<TerminalSession>(setup_.loop, reader_.loop(), std::move(events),
                                                     std::move(plan->forcedTranscriptID));
    auto started = process->start({.executable = std::move(plan->executable),
                                   .args = std::move(plan->arguments),
                                   .environment = std::move(plan->environment),
                                   .execName = {},
                                   .currentDirectory = folder});
    if (!started) return failure(Reason::notStarted, std::move(started.error()));
    return process;
}

std::expected<LaunchPlan, LaunchPlan::Error> TerminalLauncher::planFor(const SessionController& session) const {
    const SessionController::Identity& identity = session.identity();
    LaunchAdditions additions = setup_.support.additions(session);
    return LaunchPlan::compose({.kind = identity.kind,
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
}

}  // namespace orvane
