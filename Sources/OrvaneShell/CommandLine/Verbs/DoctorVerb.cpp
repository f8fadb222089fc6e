#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "Orvane/History/TranscriptDrift.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Verbs/ToolsTable.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

/// Of an agent's records, and characters of a kind's name: a file of something else may hold any.
constexpr std::size_t mostKinds = 100;
constexpr std::size_t longestKind = 80;

void printTranscripts(ClientContext& client, const JSONObject& transcripts) {
    const L10n& l10n = client.l10n;
    client.output << '\n'
                  << l10n.text("doctor.transcripts", transcripts.integer("filesRead"),
                               transcripts.integer("filesFound"))
                  << '\n';
    const JsonArray& unknown = transcripts.array("notUnderstood");
    if (unknown.empty()) {
        client.output << l10n.text("doctor.allUnderstood") << '\n';
        return;
    }
    client.output << l10n.text("doctor.notUnderstood") << '\n';
    Columns columns;
    columns.add({l10n.text("column.agent"), l10n.text("column.count"), l10n.text("column.record")});
    for (const JsonValue& each : unknown) {
        const JSONObject row(each);
        columns.add({row.string("provider"), std::to_string(row.integer("count")), row.string("kind")});
    }
    client.output << columns.text();
}

int run(ClientContext& client, const Arguments& arguments) {
    const auto print = [&](const JsonValue& result) {
        const JSONObject found(result);
        if (arguments.has("json")) {
            client.printJson(result);
            return;
        }
        ToolsTable::print(client, found);
        printTranscripts(client, found.object("transcripts"));
    };
    return client.ask("doctor", {}, print, HostStart::ifNeeded);
}

/// The most frequent first.
void addKinds(TranscriptProvider provider, const std::map<std::string, std::size_t>& kinds, JsonArray& rows) {
    std::vector<std::pair<std::string, std::size_t>> sorted(kinds.begin(), kinds.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(), &std::pair<std::string, std::size_t>::second);
    sorted.resize(std::min(sorted.size(), mostKinds));
    for (const auto& [kind, count] : sorted)
        rows.push_back(
            {{"provider", rawValue(provider)}, {"kind", Text::truncated(kind, longestKind)}, {"count", count}});
}

JsonValue driftJson(const TranscriptDrift& drift) {
    JsonArray rows;
    for (const auto& [provider, kinds] : drift.notUnderstood)
        addKinds(provider, kinds, rows);
    return {{"filesRead", drift.filesRead}, {"filesFound", drift.filesFound}, {"notUnderstood", std::move(rows)}};
}

Outcome serve(HostContext& host, const JSONObject&) {
    const auto told = [&tools = host.tools, answer = host.answer](const TranscriptDrift& drift) {
        tools.refresh([&tools, answer, drift] {
            boost::json::object found = ToolsTable::describe(tools).as_object();
            found["transcripts"] = driftJson(drift);
            answer(JsonValue(std::move(found)));
        });
    };
    runInBackground(
        host.store.pool(), host.store.loop(), [home = host.history.home()] { return TranscriptDrift::look(home); },
        told);
    return Later{};
}

}  // namespace

Verb doctor() {
    return {.name = "doctor",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
