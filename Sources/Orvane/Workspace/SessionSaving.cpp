#include "Orvane/Workspace/SessionSaving.h"

#include <algorithm>
#include <array>
#include <csignal>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/History/SessionHistory.h"

namespace orvane::SessionSaving {

namespace {

/// The command that it was started with; none for the kind's own.
std::optional<std::string> startCommand(const SessionController::Identity& identity) {
    if (identity.command || !identity.agentSpec) return identity.command;
    return identity.agentSpec->command;
}

std::optional<std::string> transcriptID(const SessionController& session) {
    const TranscriptWatch* transcript = session.agent() == nullptr ? nullptr : session.agent()->transcript();
    // What it was begun with does not count any more: it may have gone on with another one.
    if (transcript != nullptr && transcript->path()) return transcript->conversationID();
    if (const auto& forced = session.forcedTranscriptID()) return forced;
    const auto& command = session.identity().command;
    if (!command) return std::nullopt;
    if (auto resumed = SessionHistory::resumeIdentifier(*command)) return resumed;
    // An id can be given to one new conversation only; going on with it is what is left.
    return AgentCommand::optionValue(*command, "--session-id");
}

std::optional<std::string> resumeCommand(const SessionController& session) {
    const auto provider = fromRawValue<SessionHistory::Provider>(rawValue(session.identity().kind));
    const auto id = provider ? transcriptID(session) : std::nullopt;
    return id ? SessionHistory::resumeCommand(*provider, *id) : std::nullopt;
}

}  // namespace

RestorableSession saved(const SessionController& session) {
    const SessionController::Identity& identity = session.identity();
    const SessionController::Appearance& appearance = session.appearance();
    auto command = resumeCommand(session);
    const bool isElsewhere = identity.projectPath != identity.projectRoot;
    return {.sessionID = identity.id,
            .kind = identity.kind,
            .title = appearance.userTitle,
            .command = command ? std::move(command) : startCommand(identity),
            .tintIndex = appearance.tintIndex,
            .fontSize = appearance.fontSize,
            .customAgentID = identity.agentSpec ? std::optional(identity.agentSpec->id) : std::nullopt,
            .workingDirectory = isElsewhere ? std::optional(identity.projectPath) : std::nullopt};
}

bool wasEndedFromOutside(const SessionStatus& status) {
    constexpr std::array signals = {SIGHUP, SIGTERM, SIGKILL};
    constexpr int shellOffset = 128;
    const auto* failed = std::get_if<SessionStatus::Failed>(&status.value);
    if (failed == nullptr) return false;
    const ProcessEnd end = ProcessEnd::decoding(failed->exitCode);
    return std::ranges::any_of(signals,
                               [&](int each) { return end.signal == each || end.exitCode == shellOffset + each; });
}

}  // namespace orvane::SessionSaving
