#include <boost/json.hpp>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Texts/SessionTexts.h"

namespace orvane::Verbs {

namespace {

template <typename Act>
Outcome act(HostContext& host, const JSONObject& arguments, Act answer) {
    const auto target = AgentArguments::agent(host, arguments);
    if (!target) return target.error();
    const std::expected<void, AnswerRefusal> done = answer(target->agent->answers());
    if (!done) return Refusal{.message = SessionTexts::answerRefusal(host.l10n, done.error(), *target->agent)};
    return JsonValue();
}

int ask(ClientContext& client, std::string_view verb, const Arguments& arguments) {
    boost::json::object request;
    for (const auto& [name, value] : arguments.values)
        request[name] = value;
    return client.ask(verb, std::move(request), [](const JsonValue&) {});
}

Outcome serveApprove(HostContext& host, const JSONObject& arguments) {
    return act(host, arguments, [](AgentAnswers& answers) { return answers.approve(); });
}

Outcome serveDeny(HostContext& host, const JSONObject& arguments) {
    return act(host, arguments, [](AgentAnswers& answers) { return answers.deny(); });
}

Outcome serveAnswer(HostContext& host, const JSONObject& arguments) {
    return act(host, arguments, [&](AgentAnswers& answers) { return answers.answer(arguments.string("answer")); });
}

Outcome serveInterrupt(HostContext& host, const JSONObject& arguments) {
    const auto target = AgentArguments::agent(host, arguments);
    if (!target) return target.error();
    target->agent->interrupt();
    return JsonValue();
}

Outcome serveClear(HostContext& host, const JSONObject& arguments) {
    const auto target = AgentArguments::agent(host, arguments);
    if (!target) return target.error();
    if (!hasAgentTranscript(target->session->identity().kind)) {
        return Refusal{.message = host.l10n.text("error.noSetting", target->session->title())};
    }
    target->agent->prompts().send("/clear", {});
    return JsonValue();
}

}  // namespace

Verb approve() {
    return {.name = "approve",
            .parameters = {AgentArguments::sessionParameter},
            .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "approve", arguments); },
            .serve = serveApprove};
}

Verb deny() {
    return {.name = "deny",
            .parameters = {AgentArguments::sessionParameter},
            .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "deny", arguments); },
            .serve = serveDeny};
}

Verb answer() {
    return {.name = "answer",
            .parameters = {AgentArguments::sessionParameter,
                           {.kind = Parameter::Kind::required, .name = "ANSWER", .textKey = "help.parameter.answer"}},
            .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "answer", arguments); },
            .serve = serveAnswer};
}

Verb interrupt() {
    return {
        .name = "interrupt",
        .parameters = {AgentArguments::sessionParameter},
        .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "interrupt", arguments); },
        .serve = serveInterrupt};
}

Verb clear() {
    return {.name = "clear",
            .parameters = {AgentArguments::sessionParameter},
            .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "clear", arguments); },
            .serve = serveClear};
}

}  // namespace orvane::Verbs
