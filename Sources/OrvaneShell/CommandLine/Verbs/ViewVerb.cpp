#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/View/ViewClient.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    return ViewClient::run(client, {.project = arguments.value("project"), .isPlain = arguments.has("screen-reader")});
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    if (!host.openView) return Refusal{.message = host.l10n.text("error.noView")};
    return host.openView(host, arguments);
}

}  // namespace

Verb view() {
    return {.name = "view",
            .parameters = {{.kind = Parameter::Kind::optional, .name = "PROJECT", .textKey = "help.parameter.project"},
                           {.kind = Parameter::Kind::flag,
                            .name = "--screen-reader",
                            .textKey = "help.parameter.screenReader"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
