#include <boost/json.hpp>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    return client.ask("close", {{"id", arguments.value("id")}}, [](const JsonValue&) {});
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto item = Selection::item(host, arguments.string("id"));
    if (!item) return item.error();
    switch (item->kind) {
        case Selection::Item::Kind::session:
            host.store.closeSession(item->id);
            break;
        case Selection::Item::Kind::pane:
            host.store.closePane(item->id);
            break;
        case Selection::Item::Kind::surface:
            host.store.closeSurface(item->id);
            break;
    }
    return JsonValue();
}

}  // namespace

Verb close() {
    return {.name = "close",
            .parameters = {{.kind = Parameter::Kind::required, .name = "ID", .textKey = "help.parameter.closeId"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
