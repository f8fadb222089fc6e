#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    if (arguments.has("follow")) return client.follow("events", {{"follow", true}});
    return client.ask("events", {}, [&](const JsonValue& result) {
        if (!result.is_array()) return;
        for (const JsonValue& event : result.get_array())
            client.printJson(event);
    });
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    if (!arguments.boolean("follow")) {
        boost::json::array events;
        for (const SessionEvent& event : host.store.recentEvents())
            events.push_back(event.encode());
        return JsonValue(std::move(events));
    }
    const auto connection = host.connection.lock();
    if (!connection) return Streaming{};
    connection->beginStream();
    const auto subscription = std::make_shared<Registration>(
        host.store.sessionEvents.subscribe([weak = host.connection](const SessionEvent& event) {
            if (const auto follower = weak.lock()) follower->stream(Json::write(event.encode()));
        }));
    connection->onClose([subscription] { subscription->reset(); });
    return Streaming{};
}

}  // namespace

Verb events() {
    return {.name = "events",
            .parameters = {{.kind = Parameter::Kind::flag, .name = "--follow", .textKey = "help.parameter.follow"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
