#include <algorithm>
#include <boost/json.hpp>
#include <filesystem>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/SessionStart.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/Host/ProjectFolder.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    return client.ask(
        "history resume", {{"id", arguments.value("id")}},
        [&](const JsonValue& result) { client.output << JSONObject(result).string("id") << '\n'; },
        HostStart::ifNeeded);
}

/// Two programs that write one transcript would each lose what the other one wrote.
const SessionController* sessionIn(const AppStore& store, const SessionRecord& record) {
    const auto isIn = [&](const std::shared_ptr<SessionController>& session) {
        const auto& command = session->identity().command;
        const auto resumed = command ? SessionHistory::resumeIdentifier(*command) : std::nullopt;
        return session->isActive() && rawValue(session->identity().kind) == rawValue(record.provider) &&
               (session->forcedTranscriptID() == record.id || resumed == record.id);
    };
    const auto found = std::ranges::find_if(store.sessions(), isIn);
    return found == store.sessions().end() ? nullptr : found->get();
}

/// The project that the folder is in, the innermost of several; made when there is none.
Uuid projectOf(AppStore& store, const std::string& folder) {
    const Project* innermost = nullptr;
    for (const Project& project : store.workspace().projects) {
        const bool isIn = folder == project.path || folder.starts_with(project.path + "/");
        if (isIn && (innermost == nullptr || innermost->path.size() < project.path.size())) innermost = &project;
    }
    return innermost != nullptr ? innermost->id : store.addProject(folder);
}

Outcome resume(AppStore& store, const L10n& l10n, const SessionRecord& record, const std::string& folder) {
    const auto kind = fromRawValue<SessionKind>(rawValue(record.provider));
    const auto command = SessionHistory::resumeCommand(record);
    const Uuid project = projectOf(store, folder);
    const auto session = SessionStart::start(
        store, l10n,
        {.kind = *kind, .project = project, .command = command, .workingDirectory = folder, .targetLeaf = {}});
    if (!session) return session.error();
    return JsonValue{{"id", (*session)->id().lowerText()}};
}

/// What stands in the way of working in the folder may be that it is gone; a person reads that differently.
std::expected<std::string, std::string> folderOf(const L10n& l10n, const std::string& path) {
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error))
        return std::unexpected(l10n.text("history.projectMissing", path.empty() ? "?" : Text::oneLine(path)));
    return usableFolder(l10n, path);
}

void lookAndResume(const HostContext& host, const SessionRecord& record) {
    if (const SessionController* running = sessionIn(host.store, record)) {
        const std::string id = running->id().lowerText();
        return host.answer(Refusal{.message = host.l10n.text("history.isOpen", id)});
    }
    // A folder on a network that is down may answer after minutes, and nobody else shall wait for it.
    runInBackground(
        host.store.pool(), host.store.loop(),
        [l10n = host.l10n, path = record.projectPath] { return folderOf(l10n, path); },
        [weak = host.store.weak_from_this(), l10n = host.l10n, answer = host.answer,
         record](const std::expected<std::string, std::string>& folder) {
            const auto store = weak.lock();
            if (!store) return;
            answer(folder ? resume(*store, l10n, record, *folder) : Outcome(Refusal{.message = folder.error()}));
        });
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    host.history.refresh([host, id = arguments.string("id")] {
        const auto record = Selection::conversation(host, id);
        if (!record) return host.answer(record.error());
        lookAndResume(host, *record);
    });
    return Later{};
}

}  // namespace

Verb historyResume() {
    return {.name = "history resume",
            .parameters = {{.kind = Parameter::Kind::required, .name = "ID", .textKey = "help.parameter.historyId"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
