#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/Host.h"
#include "OrvaneShell/Host/HostContext.h"
#include "Platform/DetachedProcess.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    if (arguments.has("background")) {
        // Started by a command that waits for the word; nobody reads the standard streams.
        auto starter = DetachedProcess::Starter::find();
        const auto tell = [&](const std::string& word) { starter.tell(word); };
        return runHost(Host::Mode::background, client.environment, tell, tell);
    }
    const auto tellFailure = [&](const std::string& message) { client.errors << message << '\n'; };
    return runHost(Host::Mode::foreground, client.environment, [](const std::string&) {}, tellFailure);
}

Outcome activate(HostContext& host, const JSONObject&) {
    host.store.activationRequested.emit();
    return JsonValue();
}

}  // namespace

Verb host() {
    return {.name = "host", .parameters = {{.kind = Parameter::Kind::flag, .name = "--background"}}, .run = run};
}

Verb activateExisting() {
    return {.name = "activate-existing", .serve = activate, .isHidden = true};
}

}  // namespace orvane::Verbs
