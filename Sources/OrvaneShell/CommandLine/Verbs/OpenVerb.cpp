#include <boost/json.hpp>
#include <filesystem>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/Host/ProjectFolder.h"

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
