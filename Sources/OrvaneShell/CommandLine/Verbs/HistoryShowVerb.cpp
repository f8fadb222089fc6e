#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "Orvane/History/ConversationFile.h"
#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Transcripts/ThreadText.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/ConversationJson.h"
#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;

constexpr int mostEntries = 5000;
/// Of the entries as JSON: what they become stays below what the host keeps for a client that reads slowly.
constexpr std::size_t largestReply = std::size_t{3} << 20;

int run(ClientContext& client, const Arguments& arguments) {
    const auto limit = TerminalArguments::number(client, arguments, "limit", mostEntries, {1, mostEntries});
    if (!limit) return limit.error();
    boost::json::object request{{"id", arguments.value("id")}, {"limit", *limit}};
    for (const std::string& flag : arguments.flags)
        request[flag] = true;
    const auto print = [&](const JsonValue& result) {
        const JSONObject shown(result);
        if (arguments.has("json")) {
            client.printJson(result);
        } else {
            client.output << shown.string("text");
        }
        if (!shown.boolean("isComplete", true))
            client.errors << client.l10n.plural("history.cut", shown.integer("count")) << '\n';
    };
    return client.ask("history show", std::move(request), print, HostStart::ifNeeded);
}

/// What the request asks for.
struct Wish {
    int limit = mostEntries;
    bool isJson = false;
    ThreadText::Look look;
};

Wish wishOf(const HostContext& host, const JSONObject& arguments) {
    using ThreadText::Form;
    using ThreadText::Tools;
    return {
        .limit = static_cast<int>(std::clamp<std::int64_t>(arguments.integer("limit", mostEntries), 1, mostEntries)),
        .isJson = arguments.boolean("json"),
        .look = {.form = arguments.boolean("markdown") ? Form::markdown : Form::plain,
                 .tools = arguments.boolean("tools") ? Tools::unfolded : Tools::folded,
                 .l10n = host.l10n,
                 .timeZone = host.history.timeZone()}};
}

ThreadText::Heading headingOf(const SessionRecord& record) {
    return {.title = record.title,
            .provider = record.provider,
            .projectPath = record.projectPath,
            .id = record.id,
            .from = record.firstPromptAt,
            .to = record.lastActivityAt};
}

/// On a thread of the pool.
Outcome show(const SessionRecord& record, const Wish& wish) {
    // One more than wanted tells whether there are more.
    auto entries = ConversationFile::entries(record.filePath, record.provider, wish.limit + 1);
    if (!entries) return Refusal{.message = wish.look.l10n.text("history.unreadable", entries.error().message())};
    const std::size_t found = entries->size();
    if (std::cmp_greater(found, wish.limit)) entries->erase(entries->begin());
    const auto shown = ThreadText::newestWithin(*std::move(entries), largestReply);
    boost::json::object result{{"isComplete", shown.size() == found}, {"count", shown.size()}};
    if (wish.isJson) {
        result["conversation"] = conversationJson(record);
        result["entries"] = encodedList(shown);
    } else {
        result["text"] = ThreadText::text(headingOf(record), shown, wish.look);
    }
    return JsonValue(std::move(result));
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    host.history.refresh([host, id = arguments.string("id"), wish = wishOf(host, arguments)] {
        const auto record = Selection::conversation(host, id);
        if (!record) return host.answer(record.error());
        runInBackground(
            host.store.pool(), host.store.loop(), [record = *record, wish] { return show(record, wish); },
            [answer = host.answer](const Outcome& outcome) { answer(outcome); });
    });
    return Later{};
}

}  // namespace

Verb historyShow() {
    return {.name = "history show",
            .parameters =
                {{.kind = Kind::required, .name = "ID", .textKey = "help.parameter.historyId"},
                 {.kind = Kind::flag, .name = "--markdown", .textKey = "help.parameter.markdown"},
                 {.kind = Kind::flag, .name = "--tools", .textKey = "help.parameter.eachTool"},
                 {.kind = Kind::option, .name = "--limit", .valueName = "N", .textKey = "help.parameter.showLimit"},
                 {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
