#include "OrvaneShell/Host/RequestRouter.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneShell/CommandLine/VerbTable.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane {

namespace {

std::string replyLine(const Refusal& refusal) {
    boost::json::object error{{"code", refusal.code}, {"message", refusal.message}};
    if (!refusal.details.is_null()) error["details"] = refusal.details;
    return Json::write({{"ok", false}, {"error", error}});
}

std::string replyLine(const JsonValue& result) {
    return Json::write({{"ok", true}, {"result", result}});
}

void answer(LineServer::Connection& connection, const Outcome& outcome) {
    std::visit(Overloaded{
                   [&](const JsonValue& result) { connection.reply(replyLine(result)); },
                   [&](const Refusal& refusal) { connection.reply(replyLine(refusal)); },
                   [](const Streaming&) {},
                   [](const Later&) {},
               },
               outcome);
}

}  // namespace

RequestRouter::RequestRouter(const HostServices& services, L10n l10n, std::function<void()> stop)
    : services_(services), l10n_(l10n), stop_(std::move(stop)) {}

void RequestRouter::handle(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line) {
    answer(*connection, serve(connection, line));
}

Outcome RequestRouter::serve(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line) {
    const auto json = Json::parse(line);
    if (!json || !json->is_object()) {
        return Refusal{.code = "malformed", .message = l10n_.text("error.malformedRequest")};
    }
    const JSONObject request(*json);
    const L10n l10n{request.raw<Language>("language").value_or(l10n_.language)};
    const std::string name = request.string("verb");
    const Verb* verb = verbNamed(name);
    if (verb == nullptr || verb->serve == nullptr) {
        return Refusal{.code = "unknownVerb", .message = l10n.text("usage.unknownVerb", name)};
    }
    HostContext host{.store = services_.store,
                     .agents = services_.agents,
                     .tools = services_.tools,
                     .history = services_.history,
                     .preferences = services_.preferences,
                     .openView = services_.openView,
                     .l10n = l10n,
                     .connection = connection,
                     .answer =
                         [weak = std::weak_ptr(connection)](const Outcome& outcome) {
                             if (const auto client = weak.lock()) answer(*client, outcome);
                         },
                     .stop = stop_};
    return verb->serve(host, request.object("arguments"));
}

std::string RequestRouter::faultReply(LineServer::Fault fault) const {
    switch (fault) {
        case LineServer::Fault::requestTooLong:
            return replyLine(Refusal{.code = "tooLong", .message = l10n_.text("error.requestTooLong")});
        case LineServer::Fault::requestTooSlow:
            return replyLine(Refusal{.code = "tooSlow", .message = l10n_.text("error.requestTooSlow")});
        case LineServer::Fault::tooManyConnections:
            return replyLine(Refusal{.code = "tooMany", .message = l10n_.text("error.tooManyConnections")});
    }
    std::unreachable();
}

}  // namespace orvane
