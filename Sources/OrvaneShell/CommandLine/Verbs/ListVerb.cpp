#include <boost/json.hpp>
#include <ostream>

#include "OrvaneCore/Support/IdPrefix.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

std::size_t idLength(const JsonArray& rows) {
    std::vector<Uuid> ids;
    for (const JsonValue& row : rows) {
        if (const auto id = JSONObject(row).uuid("id")) ids.push_back(*id);
    }
    return IdPrefix::distinguishingLength(ids);
}

void printTable(ClientContext& client, const JsonValue& result) {
    if (!result.is_array() || result.get_array().empty()) {
        client.output << client.l10n.text("list.empty") << '\n';
        return;
    }
    const JsonArray& rows = result.get_array();
    const std::size_t length = idLength(rows);
    const L10n& l10n = client.l10n;
    Columns columns;
    columns.add({l10n.text("column.id"), l10n.text("column.kind"), l10n.text("column.status"),
                 l10n.text("column.title"), l10n.text("column.folder")});
    for (const JsonValue& row : rows) {
        const JSONObject session(row);
        columns.add({session.string("id").substr(0, length), session.string("kind"), statusText(l10n, session),
                     session.string("title"), session.string("cwd")});
    }
    client.output << columns.text();
}

int run(ClientContext& client, const Arguments& arguments) {
    return client.ask("list", {}, [&](const JsonValue& result) {
        if (arguments.has("json")) return client.printJson(result);
        printTable(client, result);
    });
}

Outcome serve(HostContext& host, const JSONObject&) {
    boost::json::array rows;
    for (const auto& session : host.store.sessions())
        rows.push_back(sessionAndContextJson(*session));
    return JsonValue(std::move(rows));
}

}  // namespace

Verb list() {
    return {.name = "list",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
