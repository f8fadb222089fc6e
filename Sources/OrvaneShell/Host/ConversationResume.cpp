#include "OrvaneShell/Host/ConversationResume.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/SessionStart.h"
#include "OrvaneShell/Host/ProjectFolder.h"

namespace orvane::ConversationResume {

namespace {

bool isIn(const SessionController& session, const SessionRecord& record) {
    const auto& command = session.identity().command;
    if (!session.isActive() || transcriptProvider(session.identity().kind) != record.provider) return false;
    const TranscriptWatch* transcript = session.agent() == nullptr ? nullptr : session.agent()->transcript();
    // What it was begun with counts until it is known where it is.
    if (transcript != nullptr && transcript->path()) return transcript->path() == record.filePath;
    if (session.forcedTranscriptID() == record.id) return true;
    return command && SessionHistory::resumeIdentifier(*command) == record.id;
}

/// The project that the folder is in, the innermost of several; made when there is none.
Uuid projectOf(AppStore& store, const std::string& folder) {
    const Project* innermost = nullptr;
    for (const Project& project : store.workspace().projects) {
        const bool isInside = folder == project.path || folder.starts_with(project.path + "/");
        if (isInside && (innermost == nullptr || innermost->path.size() < project.path.size())) innermost = &project;
    }
    return innermost != nullptr ? innermost->id : store.addProject(folder);
}

/// What stands in the way of working in the folder may be that it is gone; a person reads that differently.
std::expected<std::string, std::string> folderOf(const L10n& l10n, const std::string& path) {
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error))
        return std::unexpected(l10n.text("history.projectMissing", path.empty() ? "?" : Text::oneLine(path)));
    return usableFolder(l10n, path);
}

std::expected<void, Refusal> checkFree(const AppStore& store, const L10n& l10n, const SessionRecord& record) {
    const SessionController* running = sessionIn(store, record);
    if (running == nullptr) return {};
    return std::unexpected(Refusal{.message = l10n.text("history.isOpen", running->id().lowerText())});
}

Resumed startIn(AppStore& store, const L10n& l10n, const SessionRecord& record,
                const std::expected<std::string, std::string>& folder) {
    if (!folder) return std::unexpected(Refusal{.message = folder.error()});
    // Somebody else may have been quicker while the disk was asked.
    if (const auto free = checkFree(store, l10n, record); !free) return std::unexpected(free.error());
    const auto kind = fromRawValue<SessionKind>(rawValue(record.provider));
    const auto command = SessionHistory::resumeCommand(record);
    const Uuid project = projectOf(store, *folder);
    return SessionStart::start(
        store, l10n,
        {.kind = *kind, .project = project, .command = command, .workingDirectory = *folder, .targetLeaf = {}});
}

}  // namespace

SessionController* sessionIn(const AppStore& store, const SessionRecord& record) {
    const auto found = std::ranges::find_if(
        store.sessions(), [&](const std::shared_ptr<SessionController>& session) { return isIn(*session, record); });
    return found == store.sessions().end() ? nullptr : found->get();
}

void start(AppStore& store, const L10n& l10n, const SessionRecord& record, std::function<void(const Resumed&)> done) {
    if (const auto free = checkFree(store, l10n, record); !free) return done(std::unexpected(free.error()));
    // A folder on a network that is down may answer after minutes, and nobody else shall wait for it.
    runInBackground(
        store.pool(), store.loop(), [l10n, path = record.projectPath] { return folderOf(l10n, path); },
        [weak = store.weak_from_this(), l10n, done = std::move(done),
         record](const std::expected<std::string, std::string>& folder) {
            if (const auto known = weak.lock()) done(startIn(*known, l10n, record, folder));
        });
}

}  // namespace orvane::ConversationResume
