#include <array>
#include <boost/json.hpp>
#include <ostream>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/SessionWait.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    std::string text = arguments.value("text");
    if (text == "-") text = client.allInput();
    boost::json::object request{{"session", arguments.value("session")}, {"text", text}};
    if (!arguments.value("model").empty()) request["model"] = arguments.value("model");
    if (const auto added = AgentArguments::addTimeout(client, arguments, request); !added) return added.error();
    if (arguments.has("wait")) {
        request["wait"] = true;
        return AgentArguments::await(client, "send", request);
    }
    return client.ask("send", std::move(request),
                      [&](const JsonValue& result) { client.output << JSONObject(result).string("state") << '\n'; });
}

/// Over when the prompt has been answered, when the agent asks something on the way, or when it can come no further.
SessionWait::Test turnIsOver(const L10n& l10n, std::uint64_t number) {
    return [l10n, number](const SessionController* session) -> std::optional<Outcome> {
        if (session == nullptr || !session->isActive()) return AgentArguments::reached(session, false);
        const PromptPipeline::Prompt* prompt = session->agent()->prompts().prompt(number);
        if (prompt != nullptr && prompt->state == PromptState::failed) {
            return Refusal{.message = l10n.text("shell.chat.notReady")};
        }
        if (prompt != nullptr && prompt->state == PromptState::standing) {
            return Refusal{.message = l10n.text("error.promptStands")};
        }
        if (prompt != nullptr || session->status().name() == "working") return std::nullopt;
        return AgentArguments::reached(session, true);
    };
}

/// A plain program gets the text as it would be typed.
Outcome sendToProgram(HostContext& host, SessionController& session, const std::string& text) {
    HeadlessTerminal* terminal = session.terminal();
    if (terminal == nullptr) return Refusal{.message = host.l10n.text("error.noTerminal", session.title())};
    if (!terminal->process.running()) return Refusal{.message = host.l10n.text("error.hasEnded")};
    session.type(text + "\r");
    return JsonValue{{"state", "delivered"}};
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto session = Selection::session(host, arguments.string("session"));
    if (!session) return session.error();
    const std::string text = arguments.string("text");
    if (Text::trimmed(text).empty()) {
        return Refusal{.code = "usage", .message = host.l10n.text("usage.emptyPrompt")};
    }
    if ((*session)->agent() == nullptr) return sendToProgram(host, **session, text);
    const auto target = AgentArguments::agent(host, arguments);
    if (!target) return target.error();
    PromptPipeline& prompts = target->agent->prompts();
    const std::uint64_t number = prompts.send(text, arguments.optionalString("model"));
    if (arguments.boolean("wait")) {
        return SessionWait::start(host, target->session->id(), turnIsOver(host.l10n, number),
                                  AgentArguments::timeoutOf(arguments));
    }
    const PromptPipeline::Prompt* prompt = prompts.prompt(number);
    return JsonValue{{"state", rawValue(prompt == nullptr ? PromptState::delivered : prompt->state)}};
}

}  // namespace

Verb send() {
    using Kind = Parameter::Kind;
    return {
        .name = "send",
        .parameters = {AgentArguments::sessionParameter,
                       {.kind = Kind::required, .name = "TEXT", .textKey = "help.parameter.prompt"},
                       {.kind = Kind::option, .name = "--model", .valueName = "M", .textKey = "help.parameter.model"},
                       {.kind = Kind::flag, .name = "--wait", .textKey = "help.parameter.wait"},
                       AgentArguments::timeoutParameter},
        .run = run,
        .serve = serve};
}

}  // namespace orvane::Verbs
