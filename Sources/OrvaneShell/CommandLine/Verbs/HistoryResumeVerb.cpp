#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/ConversationResume.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    return client.ask(
        "history resume", {{"id", arguments.value("id")}},
        [&](const JsonValue& result) { client.output << JSONObject(result).string("id") << '\n'; },
        HostStart::ifNeeded);
}

void resume(const HostContext& host, const SessionRecord& record) {
    ConversationResume::start(host.store, host.l10n, record,
                              [answer = host.answer](const ConversationResume::Resumed& resumed) {
                                  if (!resumed) return answer(resumed.error());
                                  answer(JsonValue{{"id", (*resumed)->id().lowerText()}});
                              });
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    host.history.refresh([host, id = arguments.string("id")] {
        const auto record = Selection::conversation(host, id);
        if (!record) return host.answer(record.error());
        resume(host, *record);
    });
    return Later{};
}

}  // namespace

Verb historyResume() {
    return {.name = "history resume",
            .parameters = {{.kind = Parameter::Kind::required, .name = "ID", .textKey = "help.parameter.historyId"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
