#include "OrvaneShell/CommandLine/ClientContext.h"

#include <algorithm>
#include <boost/json.hpp>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"

namespace orvane {

int ClientContext::ask(std::string_view verb, boost::json::object arguments,
                       const std::function<void(const JsonValue&)>& print, HostStart start) {
    const auto connection = connect(start);
    if (!connection) return connection.error();
    const auto line = (*connection)->request(requestLine(verb, arguments));
    if (!line) {
        errors << l10n.text("error.hostGone", line.error().message()) << '\n';
        return CommandStatus::refused;
    }
    const auto reply = Json::parse(*line);
    const JSONObject object = reply ? JSONObject(*reply) : JSONObject();
    if (object.boolean("ok")) {
        const JsonValue* result = object.find("result");
        print(result == nullptr ? JsonValue() : *result);
        return CommandStatus::done;
    }
    const JSONObject error = object.object("error");
    if (error.string("code") == "confirm" && isInteractive && !arguments.contains("force")) {
        if (!confirms(error.object("details"))) return CommandStatus::refused;
        arguments["force"] = true;
        return ask(verb, std::move(arguments), print, start);
    }
    return explain(error);
}

int ClientContext::follow(std::string_view verb, const boost::json::object& arguments) {
    const auto connection = connect(HostStart::never);
    if (!connection) return connection.error();
    auto line = (*connection)->request(requestLine(verb, arguments));
    for (; line; line = (*connection)->readLine()) {
        const auto reply = Json::parse(*line);
        const JSONObject object = reply ? JSONObject(*reply) : JSONObject();
        if (object.contains("ok")) return explain(object.object("error"));
        output << *line << '\n' << std::flush;  // whoever reads a pipe wants each event when it comes
        if (!output) return CommandStatus::refused;
    }
    return CommandStatus::done;
}

void ClientContext::printJson(const JsonValue& value) {
    output << Json::write(value) << '\n';
}

std::expected<LineClient*, int> ClientContext::connect(HostStart start) {
    if (!connection_) {
        auto connected = ControlClient::connect(environment, start);
        if (!connected) {
            errors << (connected.error().isAbsent ? l10n.text("error.noHost")
                                                  : l10n.text("error.hostUnreachable", connected.error().message))
                   << '\n';
            return std::unexpected(connected.error().isAbsent ? CommandStatus::noHost : CommandStatus::refused);
        }
        connection_ = std::make_unique<LineClient>(std::move(*connected));
    }
    return connection_.get();
}

std::string ClientContext::requestLine(std::string_view verb, const boost::json::object& arguments) const {
    return Json::write({{"verb", verb}, {"arguments", arguments}, {"language", rawValue(l10n.language)}});
}

int ClientContext::explain(const JSONObject& error) {
    errors << Text::oneLine(error.string("message", l10n.text("error.badReply"))) << '\n';
    return error.string("code") == "usage" ? CommandStatus::wrongUsage : CommandStatus::refused;
}

bool ClientContext::confirms(const JSONObject& details) {
    errors << details.string("title") << '\n' << details.string("info") << '\n';
    errors << l10n.text("prompt.confirm", details.string("confirm")) << ' ' << std::flush;
    const std::string answer = Text::caseFolded(Text::trimmed(readAnswer()));
    return !answer.empty() && (answer.front() == 'y' || answer.starts_with(l10n.text("prompt.yes")));
}

}  // namespace orvane
