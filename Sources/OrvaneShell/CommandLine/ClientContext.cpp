#include "OrvaneShell/CommandLine/ClientContext.h"

#include <algorithm>
#include <array>
#include <boost/json.hpp>
#include <cerrno>
#include <filesystem>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"

namespace orvane {

std::string ClientContext::allInput() const {
    std::string input;
    std::array<char, 4096> bytes;
    while (const std::size_t count = readInput(bytes))
        input.append(bytes.data(), count);
    return input;
}

int ClientContext::ask(std::string_view verb, boost::json::object arguments,
                       const std::function<void(const JsonValue&)>& print, HostStart start) {
    const auto line = exchange(requestLine(verb, arguments), start, LineClient::Wait::patient);
    if (!line) return line.error();
    const auto reply = Json::parse(*line);
    const JSONObject object = reply ? JSONObject(*reply) : JSONObject();
    if (object.boolean("ok")) {
        printResult(object, print);
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
    // The first line may be hours away.
    const auto sent = (*connection)->send(requestLine(verb, arguments));
    while (sent) {
        const auto line = (*connection)->readLine();
        if (!line) break;
        const auto reply = Json::parse(*line);
        const JSONObject object = reply ? JSONObject(*reply) : JSONObject();
        if (object.contains("ok")) return explain(object.object("error"));
        output << *line << '\n' << std::flush;  // whoever reads a pipe wants each event when it comes
        if (!output) return CommandStatus::refused;
    }
    return CommandStatus::done;
}

int ClientContext::askStreaming(std::string_view verb, const boost::json::object& arguments,
                                const std::function<void(const JSONObject&)>& printLine,
                                const std::function<void(const JsonValue&)>& print, HostStart start) {
    auto line = exchange(requestLine(verb, arguments), start, LineClient::Wait::endless);
    while (line) {
        const auto reply = Json::parse(*line);
        const JSONObject object = reply ? JSONObject(*reply) : JSONObject();
        if (object.boolean("ok")) {
            printResult(object, print);
            return CommandStatus::done;
        }
        if (!reply || object.contains("ok")) return explain(object.object("error"));
        printLine(object);
        output.flush();  // whoever reads a pipe wants each line when it comes
        if (!output) return CommandStatus::refused;
        auto next = connection_->readLine();
        if (!next) return hostGone(next.error());
        line = *std::move(next);
    }
    return line.error();
}

void ClientContext::printResult(const JSONObject& reply, const std::function<void(const JsonValue&)>& print) {
    const JsonValue* result = reply.find("result");
    print(result == nullptr ? JsonValue() : *result);
}

bool ClientContext::wasUnread(const SystemError& error) {
    return error.number == ECONNRESET || error.number == EPIPE;
}

int ClientContext::hostGone(const SystemError& error) {
    connection_.reset();
    errors << l10n.text("error.hostGone", error.message()) << '\n';
    return CommandStatus::refused;
}

/// Sends a request and returns the first line that answers it, or else the exit status.
std::expected<std::string, int> ClientContext::exchange(const std::string& line, HostStart start,
                                                        LineClient::Wait wait) {
    for (int attempt = 1;; ++attempt) {
        const auto connection = connect(start);
        if (!connection) return std::unexpected(connection.error());
        auto reply = (*connection)->request(line, wait);
        if (reply) return std::move(*reply);
        connection_.reset();
        if (wasUnread(reply.error()) && attempt < attempts) continue;
        return std::unexpected(hostGone(reply.error()));
    }
}

std::string ClientContext::projectText(const std::string& typed) const {
    const bool isPath =
        typed == "." || typed == ".." || typed.starts_with('/') || typed.starts_with("./") || typed.starts_with("../");
    if (!isPath) return typed;
    std::error_code error;
    // The folder of a project may be gone.
    const auto path = std::filesystem::weakly_canonical(std::filesystem::path(workingDirectory) / typed / "", error);
    return error ? typed : (path.has_filename() ? path : path.parent_path()).string();
}

void ClientContext::printJson(const JsonValue& value) {
    output << Json::write(value) << '\n';
}

std::expected<LineClient*, int> ClientContext::connect(HostStart start) {
    if (!connection_) {
        auto connected = ControlClient::connect(environment, start);
        if (!connected) {
            const auto& [isAbsent, message] = connected.error();
            errors << (isAbsent          ? l10n.text("error.noHost")
                       : message.empty() ? l10n.text("error.hostNotUp")
                                         : l10n.text("error.hostUnreachable", message))
                   << '\n';
            return std::unexpected(isAbsent ? CommandStatus::noHost : CommandStatus::refused);
        }
        connection_ = std::make_unique<LineClient>(std::move(*connected));
    }
    return connection_.get();
}

std::expected<boost::json::object, int> ClientContext::requestOf(const Arguments& arguments) const {
    boost::json::object request;
    std::vector<std::string> texts;
    for (const auto& [name, value] : arguments.values) {
        request[name] = value;
        texts.push_back(value);
    }
    for (const auto& [name, values] : arguments.lists) {
        request[name] = JsonArray(values.begin(), values.end());
        texts.insert(texts.end(), values.begin(), values.end());
    }
    const auto malformed = std::ranges::find_if_not(texts, Text::isValidUtf8);
    if (malformed == texts.end()) return request;
    errors << l10n.text("usage.notUtf8", Text::oneLine(*malformed)) << '\n';
    return std::unexpected(CommandStatus::wrongUsage);
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
