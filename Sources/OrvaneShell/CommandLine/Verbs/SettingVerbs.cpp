#include <boost/json.hpp>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

using Setter = std::expected<void, ControlRefusal> (AgentControls::*)(const std::string&);

Refusal explain(const HostContext& host, ControlRefusal refusal, SessionController& session, const std::string& value) {
    switch (refusal) {
        case ControlRefusal::unsupported:
            return {.message = host.l10n.text("error.noSetting", session.title())};
        case ControlRefusal::unknown:
            return {.message = host.l10n.text("error.noSuchValue", value)};
        case ControlRefusal::draftBusy:
            session.showNotice("pane.draftBusy");
            return {.message = host.l10n.text("pane.draftBusy")};
        case ControlRefusal::busy:
            return {.message = host.l10n.text("error.agentBusy", session.title())};
    }
    return {};
}

Outcome set(HostContext& host, const JSONObject& arguments, Setter setter) {
    const auto target = AgentArguments::agent(host, arguments);
    if (!target) return target.error();
    const std::string value(Text::trimmed(arguments.string("value")));
    // It becomes a line that is typed.
    if (value.empty() || Text::oneLine(value) != value) {
        return Refusal{.code = "usage", .message = host.l10n.text("error.noSuchValue", value)};
    }
    const auto done = (target->agent->controls().*setter)(value);
    if (!done) return explain(host, done.error(), *target->session, value);
    return JsonValue();
}

int ask(ClientContext& client, std::string_view verb, const Arguments& arguments, const char* parameter) {
    return client.ask(verb, {{"session", arguments.value("session")}, {"value", arguments.value(parameter)}},
                      [](const JsonValue&) {});
}

}  // namespace

Verb model() {
    return {.name = "model",
            .parameters = {AgentArguments::sessionParameter,
                           {.kind = Parameter::Kind::required, .name = "MODEL", .textKey = "help.parameter.model"}},
            .run = [](ClientContext& client,
                      const Arguments& arguments) { return ask(client, "model", arguments, "model"); },
            .serve = [](HostContext& host,
                        const JSONObject& arguments) { return set(host, arguments, &AgentControls::setModel); }};
}

Verb effort() {
    return {.name = "effort",
            .parameters = {AgentArguments::sessionParameter,
                           {.kind = Parameter::Kind::required, .name = "LEVEL", .textKey = "help.parameter.level"}},
            .run = [](ClientContext& client,
                      const Arguments& arguments) { return ask(client, "effort", arguments, "level"); },
            .serve = [](HostContext& host,
                        const JSONObject& arguments) { return set(host, arguments, &AgentControls::setEffort); }};
}

Verb mode() {
    return {
        .name = "mode",
        .parameters = {AgentArguments::sessionParameter,
                       {.kind = Parameter::Kind::required, .name = "MODE", .textKey = "help.parameter.mode"}},
        .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "mode", arguments, "mode"); },
        .serve = [](HostContext& host,
                    const JSONObject& arguments) { return set(host, arguments, &AgentControls::setPermissionMode); }};
}

}  // namespace orvane::Verbs
