#include <boost/json.hpp>
#include <ostream>

#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Support/SpanText.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"
#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

constexpr std::size_t shownPromptLength = 60;

JsonValue optionJson(const PrintedOption& option) {
    boost::json::object object{{"label", option.label}, {"selected", option.selected}, {"freeText", option.freeText}};
    if (option.number > 0) object["number"] = option.number;
    if (!option.detail.empty()) object["detail"] = option.detail;
    if (option.isTicked) object["ticked"] = *option.isTicked;
    return object;
}

/// The options as they are printed now, and those of them that are offered as buttons.
JsonValue requestJson(const SessionController& session) {
    const SessionApproval& approval = session.approval();
    const ApprovalPolicy::Request& request = *approval.pendingRequest;
    boost::json::object object{{"kind", rawValue(request.kind)}, {"question", request.detail}};
    if (!request.toolName.empty()) object["tool"] = request.toolName;
    if (approval.pendingRequestID) object["id"] = approval.pendingRequestID->lowerText();
    if (approval.approvalAskedAt) object["askedAt"] = approval.approvalAskedAt->iso8601();
    if (request.questionIndex) object["questionIndex"] = *request.questionIndex;
    if (request.questionCount) object["questionCount"] = *request.questionCount;
    object["buttons"] = boost::json::value_from(request.options);
    boost::json::array options;
    if (session.agent() != nullptr) {
        for (const PrintedOption& option : session.agent()->terminal().reading().options)
            options.push_back(optionJson(option));
    }
    object["options"] = std::move(options);
    return object;
}

void addSettings(boost::json::object& object, const AgentControls::Settings& settings) {
    const auto add = [&](const char* name, const std::optional<std::string>& value) {
        if (value) object[name] = *value;
    };
    add("model", settings.modelName);
    add("effort", settings.effortLevel);
    add("mode", settings.permissionMode);
    add("sandbox", settings.sandboxMode);
}

void addAgent(boost::json::object& object, TerminalAgent& agent) {
    boost::json::array prompts;
    for (const PromptPipeline::Prompt& prompt : agent.prompts().prompts()) {
        boost::json::object row{{"text", prompt.text}, {"state", rawValue(prompt.state)}};
        if (prompt.model) row["model"] = *prompt.model;
        prompts.push_back(std::move(row));
    }
    object["prompts"] = std::move(prompts);
    const PromptObstacle obstacle = agent.prompts().obstacle();
    if (obstacle != PromptObstacle::none) object["heldBy"] = rawValue(obstacle);
    if (const auto& draft = agent.terminal().reading().draft) object["draft"] = *draft;
    if (agent.terminal().hasProducedOutput()) object["silence"] = agent.terminal().silence().count();
    addSettings(object, agent.controls().settings());
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto found = Selection::session(host, arguments.string("session"));
    if (!found) return found.error();
    const SessionController& session = **found;
    const Date now = dateOf(host.store.loop().wallTime());
    boost::json::object object = sessionAndContextJson(session).as_object();
    const SessionController::Evidence& evidence = session.evidence();
    object["evidence"] = {{"source", rawValue(evidence.source)},
                          {"since", evidence.since.iso8601()},
                          {"age", (now - evidence.since).count()}};
    if (session.approval().pendingRequest) object["request"] = requestJson(session);
    if (session.agent() != nullptr) addAgent(object, *session.agent());
    if (!session.transientNotice().empty()) object["notice"] = session.transientNotice();
    return JsonValue(std::move(object));
}

void printRequest(ClientContext& client, const JSONObject& request) {
    const std::string tool = request.string("tool");
    client.output << (tool.empty() ? "" : tool + ": ") << request.string("question") << '\n';
    const JsonValue* options = request.find("options");
    if (options == nullptr || !options->is_array()) return;
    for (const JsonValue& row : options->get_array()) {
        const JSONObject option(row);
        const auto number = option.optionalInteger("number");
        client.output << (option.boolean("selected") ? "> " : "  ")
                      << (number ? std::to_string(*number) + ". " : std::string()) << option.string("label") << '\n';
    }
}

void printPrompts(ClientContext& client, const JSONObject& status) {
    const JsonValue* prompts = status.find("prompts");
    if (prompts == nullptr || !prompts->is_array()) return;
    for (const JsonValue& row : prompts->get_array()) {
        const JSONObject prompt(row);
        const std::string state = client.l10n.text("prompt.state." + prompt.string("state"));
        client.output << state << ": " << Text::truncated(Text::oneLine(prompt.string("text")), shownPromptLength)
                      << '\n';
    }
}

void print(ClientContext& client, const JsonValue& result) {
    const L10n& l10n = client.l10n;
    const JSONObject status(result);
    const JSONObject evidence = status.object("evidence");
    client.output << status.string("title") << ": " << statusText(l10n, status) << " ("
                  << l10n.text("status.evidence", l10n.text("evidence." + evidence.string("source")),
                               spanText(l10n, Seconds(evidence.number("age"))))
                  << ")\n";
    if (status.contains("request")) printRequest(client, status.object("request"));
    printPrompts(client, status);
    if (status.contains("heldBy")) client.output << l10n.text("prompt.heldBy." + status.string("heldBy")) << '\n';
    std::string settings;
    for (const char* name : {"model", "effort", "mode", "sandbox"}) {
        const std::string value = status.string(name);
        if (!value.empty()) settings += (settings.empty() ? "" : ", ") + value;
    }
    if (!settings.empty()) client.output << settings << '\n';
    if (status.contains("context")) {
        const JSONObject context = status.object("context");
        const auto percent = static_cast<int>(context.number("fraction") * 100);
        client.output << l10n.text("status.context", context.integer("used"), context.integer("window"), percent)
                      << '\n';
    }
    if (status.contains("transcript")) client.output << Text::oneLine(status.string("transcript")) << '\n';
}

int run(ClientContext& client, const Arguments& arguments) {
    return client.ask("status", {{"session", arguments.value("session")}}, [&](const JsonValue& result) {
        if (arguments.has("json")) return client.printJson(result);
        print(client, result);
    });
}

}  // namespace

Verb status() {
    return {.name = "status",
            .parameters = {AgentArguments::sessionParameter,
                           {.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
