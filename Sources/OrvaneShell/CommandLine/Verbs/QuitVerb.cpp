#include <unistd.h>

#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    boost::json::object request;
    if (arguments.has("force")) request["force"] = true;
    std::int64_t stopping = 0;
    const int status = client.ask("quit", std::move(request),
                                  [&](const JsonValue& result) { stopping = JSONObject(result).integer("pid"); });
    // Whoever starts the host again right after this must not find the old one.
    if (status != CommandStatus::done || ControlClient::waitForEnd(client.environment, static_cast<pid_t>(stopping))) {
        return status;
    }
    client.errors << client.l10n.text("quit.takesLong") << '\n';
    return CommandStatus::refused;
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const L10n& l10n = host.l10n;
    const auto active = static_cast<long long>(host.store.activeSessions().size());
    if (!arguments.boolean("force")) {
        switch (host.store.requestQuit(AppStore::Window::none)) {
            case AppStore::QuitReply::now:
                break;
            case AppStore::QuitReply::later:
            case AppStore::QuitReply::cancel:
                return Refusal{.message = l10n.text("quit.alreadyAsked")};
            case AppStore::QuitReply::alert:
                return Refusal{.code = "confirm",
                               .message = l10n.plural("quit.refused", active),
                               .details = {{"title", l10n.plural("quit.alertTitle", active)},
                                           {"info", l10n.text("quit.alertInfo")},
                                           {"confirm", l10n.text("quit.confirm")},
                                           {"cancel", l10n.text("common.cancel")}}};
        }
    }
    host.stop();
    return JsonValue{{"stopping", true}, {"pid", getpid()}};
}

}  // namespace

Verb quit() {
    return {.name = "quit",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--force", .textKey = "help.parameter.force"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
