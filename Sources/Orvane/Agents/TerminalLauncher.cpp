#include "Orvane/Agents/TerminalLauncher.h"

#include <optional>
#include <utility>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Agents/TerminalSession.h"
#include "Platform/Files.h"

namespace orvane {

namespace {

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

std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> TerminalLauncher::launch(const SessionController& session,
                                                                                       SessionProcessEvents events) {
    const std::string& folder = session.identity().projectPath;
    if (auto opened = openFolder(folder); !opened) return failure(Reason::folderUnusable, std::move(opened.error()));
    auto plan = planFor(session);
    if (!plan) return failure(reasonOf(plan.error()));
    auto process = std::make_unique<TerminalSession>(setup_.loop, reader_.loop(), std::move(events),
                                                     std::move(plan->forcedTranscriptID));
    process->terminal()->changeScrollback(setup_.scrollback);
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
                                .shell = setup_.shell.shell,
                                .baseEnvironment = LocalProcess::defaultEnvironment(setup_.shell.environment),
                                .locale = setup_.shell.locale,
                                .sessionID = session.id().lowerText(),
                                .loginEnvironment = setup_.login.entries(),
                                .toolFolders = setup_.shell.toolFolders,
                                .browserVariables = std::move(additions.browserVariables),
                                .browserPrompt = std::move(additions.browserPrompt),
                                .mcpInjection = std::move(additions.mcpInjection),
                                .hookFeed = std::move(additions.hookFeed),
                                .freshTranscriptID = Uuid::random()});
}

}  // namespace orvane
