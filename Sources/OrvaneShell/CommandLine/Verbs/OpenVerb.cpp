#include <sys/stat.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    const std::string typed = arguments.value("path");
    const std::string path = (std::filesystem::path(client.workingDirectory) / typed).string();
    if (typed.empty()) {  // an unset variable of a script, not the current folder
        client.errors << client.l10n.text("usage.missing", "PATH") << '\n';
        return CommandStatus::wrongUsage;
    }
    // The current folder may be gone, and a request is text.
    if (!path.starts_with('/') || !Text::isValidUtf8(path)) {
        const char* key = path.starts_with('/') ? "error.pathNotUtf8" : "error.pathMissing";
        client.errors << client.l10n.text(key, Text::oneLine(path)) << '\n';
        return CommandStatus::refused;
    }
    return client.ask(
        "open", {{"path", path}},
        [&](const JsonValue& result) { client.output << JSONObject(result).string("id") << '\n'; },
        HostStart::ifNeeded);
}

/// The folder as it is known to every program that works in it, with links resolved: agents name their transcripts
/// after that path. The error is a line for a person.
std::expected<std::string, std::string> usableFolder(const L10n& l10n, const std::string& path) {
    const std::string shown = Text::oneLine(path);
    if (!path.starts_with('/')) return std::unexpected(l10n.text("error.pathNotAbsolute", shown));
    char* resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) {
        const char* key = errno == ENOENT || errno == ENOTDIR ? "error.pathMissing" : "error.pathUnreadable";
        return std::unexpected(l10n.text(key, shown));
    }
    std::string folder(resolved);
    std::free(resolved);
    // A link may lead to one, and the state file could not name it.
    if (!Text::isValidUtf8(folder)) {
        return std::unexpected(l10n.text("error.pathNotUtf8", Text::oneLine(folder)));
    }
    struct stat status{};
    if (stat(folder.c_str(), &status) != 0) return std::unexpected(l10n.text("error.pathUnreadable", shown));
    if (!S_ISDIR(status.st_mode)) return std::unexpected(l10n.text("error.pathIsFile", shown));
    if (access(folder.c_str(), R_OK | X_OK) != 0) return std::unexpected(l10n.text("error.pathUnreadable", shown));
    return folder;
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto path = arguments.optionalString("path");
    if (!path || path->find('\0') != std::string::npos) {
        return Refusal{.code = "usage", .message = host.l10n.text("usage.missing", "PATH")};
    }
    // A folder on a network that is down may answer after minutes, and nobody else shall wait for it.
    runInBackground(
        host.store.pool(), host.store.loop(), [l10n = host.l10n, path = *path] { return usableFolder(l10n, path); },
        [weak = host.store.weak_from_this(),
         answer = host.answer](const std::expected<std::string, std::string>& folder) {
            const auto store = weak.lock();
            if (!store) return;
            if (!folder) return answer(Refusal{.message = folder.error()});
            const Uuid id = store->addProject(*folder);
            store->selectProject(id);
            answer(JsonValue{{"id", id.lowerText()}});
        });
    return Later{};
}

}  // namespace

Verb open() {
    return {.name = "open",
            .parameters = {{.kind = Parameter::Kind::required, .name = "PATH", .textKey = "help.parameter.path"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
