#include <boost/json.hpp>
#include <limits>
#include <ostream>

#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/History/HistoryDates.h"
#include "OrvaneCore/History/HistoryIds.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/ConversationJson.h"
#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;

constexpr int linesShown = 40;
constexpr int mostShown = std::numeric_limits<int>::max();

void printTable(ClientContext& client, const JSONObject& found) {
    const L10n& l10n = client.l10n;
    const JsonArray& rows = found.array("conversations");
    if (rows.empty()) {
        client.output << l10n.text("history.empty") << '\n';
        return;
    }
    const auto length = static_cast<std::size_t>(found.integer("idLength"));
    Columns columns;
    columns.add({l10n.text("column.id"), l10n.text("column.when"), l10n.text("column.agent"),
                 l10n.text("column.project"), l10n.text("column.messages"), l10n.text("column.title")});
    for (const JsonValue& row : rows) {
        const JSONObject record(row);
        const std::string project = record.string("projectName");
        columns.add({std::string(Text::prefix(record.string("id"), length)), record.string("when"),
                     record.string("provider"), project.empty() ? "-" : project,
                     std::to_string(record.integer("messageCount")), record.string("title")});
    }
    client.output << columns.text();
    const auto total = found.integer("total");
    if (std::cmp_less(rows.size(), total)) client.errors << l10n.text("history.shown", rows.size(), total) << '\n';
}

int run(ClientContext& client, const Arguments& arguments) {
    // A script wants what there is, a person the newest.
    const auto limit = TerminalArguments::number(client, arguments, "limit",
                                                 arguments.has("json") ? mostShown : linesShown, {1, mostShown});
    if (!limit) return limit.error();
    boost::json::object request;
    for (const auto& [name, value] : arguments.values)
        request[name] = value;
    request["limit"] = *limit;
    if (request.contains("project")) request["project"] = client.projectText(arguments.value("project"));
    const auto print = [&](const JsonValue& result) {
        const JSONObject found(result);
        if (arguments.has("json")) return client.printJson(found.array("conversations"));
        printTable(client, found);
    };
    return client.ask("history", std::move(request), print, HostStart::ifNeeded);
}

Refusal usage(std::string message) {
    return {.code = "usage", .message = std::move(message)};
}

template <typename Enum>
std::string names() {
    std::string list;
    for (const auto& [value, name] : RawValues<Enum>::table)
        list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

std::expected<std::optional<Date>, Refusal> bound(const HostContext& host, const JSONObject& arguments,
                                                  const char* name, HistoryDates::Bound side) {
    const auto text = arguments.optionalString(name);
    if (!text) return std::nullopt;
    const Date now = dateOf(host.store.loop().wallTime());
    const auto date = HistoryDates::parse(*text, side, now, Calendar(host.history.timeZone()));
    if (!date) return std::unexpected(usage(host.l10n.text("usage.notADate", *text)));
    return date;
}

/// All of the question but the project, which is looked up among what the disk holds.
std::expected<HistoryService::ComputeInput, Refusal> inputOf(const HostContext& host, const JSONObject& arguments) {
    HistoryService::ComputeInput input{.text = arguments.string("query"), .language = host.l10n.language};
    if (const auto name = arguments.optionalString("provider")) {
        const auto provider = fromRawValue<TranscriptProvider>(*name);
        if (!provider)
            return std::unexpected(usage(host.l10n.text("usage.notAProvider", *name, names<TranscriptProvider>())));
        input.providers = {*provider};
    }
    if (const auto name = arguments.optionalString("sort")) {
        const auto field = fromRawValue<SessionHistory::SortField>(*name);
        if (!field)
            return std::unexpected(
                usage(host.l10n.text("usage.notASortField", *name, names<SessionHistory::SortField>())));
        input.sort = SessionHistory::naturalSort(*field);
    }
    const auto since = bound(host, arguments, "since", HistoryDates::Bound::since);
    if (!since) return std::unexpected(since.error());
    const auto until = bound(host, arguments, "until", HistoryDates::Bound::until);
    if (!until) return std::unexpected(until.error());
    input.from = *since;
    input.to = *until;
    input.limit = static_cast<std::size_t>(std::max<std::int64_t>(arguments.integer("limit", linesShown), 0));
    return input;
}

/// A project of the workspace, or any folder that somebody had a conversation in, by its path or its name.
std::expected<std::string, Refusal> projectPath(const HostContext& host, const std::string& text) {
    const auto registered = Selection::project(host, text);
    if (registered) return host.store.workspace().project(*registered)->path;
    std::vector<std::string> named;
    for (const auto& option : host.history.projectOptions()) {
        if (option.path == text) return text;
        if (Text::equalsIgnoringCase(option.name, text)) named.push_back(option.path);
    }
    if (named.size() == 1) return named.front();
    if (named.empty()) return std::unexpected(registered.error());
    return std::unexpected(Refusal{.message = host.l10n.text("error.severalMatch", text)});
}

JsonValue foundJson(const HistoryService& history, const HistoryService::Found& found) {
    boost::json::array rows;
    rows.reserve(found.rows.size());
    for (const auto& row : found.rows) {
        boost::json::object json = conversationJson(row.record);
        json["when"] = row.whenLabel;
        rows.push_back(std::move(json));
    }
    return {{"conversations", std::move(rows)},
            {"total", found.totalMatches},
            {"idLength", HistoryIds::distinguishingLength(history.records())}};
}

void answer(const HostContext& host, HistoryService::ComputeInput input, const std::optional<std::string>& project) {
    if (project) {
        const auto path = projectPath(host, *project);
        if (!path) return host.answer(path.error());
        input.project = *path;
    }
    host.history.find(std::move(input), [&history = host.history, answer = host.answer](
                                            const HistoryService::Found& found) { answer(foundJson(history, found)); });
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto input = inputOf(host, arguments);
    if (!input) return input.error();
    host.history.refresh(
        [host, input = *input, project = arguments.optionalString("project")] { answer(host, input, project); });
    return Later{};
}

}  // namespace

Verb history() {
    return {
        .name = "history",
        .parameters =
            {{.kind = Kind::optional, .name = "QUERY", .textKey = "help.parameter.historyQuery"},
             {.kind = Kind::option, .name = "--provider", .valueName = "AGENT", .textKey = "help.parameter.provider"},
             {.kind = Kind::option,
              .name = "--project",
              .valueName = "PROJECT",
              .textKey = "help.parameter.historyProject"},
             {.kind = Kind::option, .name = "--since", .valueName = "DATE", .textKey = "help.parameter.since"},
             {.kind = Kind::option, .name = "--until", .valueName = "DATE", .textKey = "help.parameter.untilDate"},
             {.kind = Kind::option, .name = "--sort", .valueName = "FIELD", .textKey = "help.parameter.historySort"},
             {.kind = Kind::option, .name = "--limit", .valueName = "N", .textKey = "help.parameter.historyLimit"},
             {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
        .run = run,
        .serve = serve};
}

}  // namespace orvane::Verbs
