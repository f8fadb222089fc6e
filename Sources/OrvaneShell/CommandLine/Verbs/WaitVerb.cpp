#include <array>
#include <boost/json.hpp>
#include <ostream>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/AgentArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/SessionWait.h"

namespace orvane::Verbs {

namespace {

constexpr std::array<std::string_view, 6> goals = {"waiting", "idle", "done", "failed", "working", "ready"};

std::string goalNames() {
    std::string list;
    for (const std::string_view goal : goals)
        list.append(list.empty() ? "" : ", ").append(goal);
    return list;
}

/// A prompt that is still to be typed will make it work.
bool hasWorkAhead(const SessionController& session) {
    if (session.agent() == nullptr || session.hasExited()) return false;
    const auto& prompts = session.agent()->prompts().prompts();
    return std::ranges::any_of(prompts, [](const PromptPipeline::Prompt& each) {
        return each.state == PromptState::queued || each.state == PromptState::delivering;
    });
}

bool isAt(const SessionController& session, std::string_view goal) {
    const std::string_view status = session.status().name();
    if (goal != "idle") return status == goal;
    return (status == "idle" || status == "ready") && !hasWorkAhead(session);
}

int run(ClientContext& client, const Arguments& arguments) {
    const std::string goal = arguments.values.contains("until") ? arguments.value("until") : std::string("idle");
    if (std::ranges::find(goals, goal) == goals.end()) {
        client.errors << client.l10n.text("usage.notAGoal", goal, goalNames()) << '\n';
        return CommandStatus::wrongUsage;
    }
    boost::json::object request{{"session", arguments.value("session")}, {"until", goal}};
    if (const auto added = AgentArguments::addTimeout(client, arguments, request); !added) return added.error();
    return AgentArguments::await(client, "wait", request);
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto session = Selection::session(host, arguments.string("session"));
    if (!session) return session.error();
    const std::string goal = arguments.string("until");
    if (std::ranges::find(goals, goal) == goals.end()) {
        return Refusal{.code = "usage", .message = host.l10n.text("usage.notAGoal", goal, goalNames())};
    }
    const auto test = [goal](const SessionController* waited) -> std::optional<Outcome> {
        const bool isThere = waited != nullptr && isAt(*waited, goal);
        const bool isOver = waited == nullptr || !waited->isActive();
        if (!isThere && !isOver) return std::nullopt;
        return AgentArguments::reached(waited, isThere);
    };
    return SessionWait::start(host, (*session)->id(), test, AgentArguments::timeoutOf(arguments));
}

}  // namespace

Verb wait() {
    return {.name = "wait",
            .parameters = {AgentArguments::sessionParameter,
                           {.kind = Parameter::Kind::option,
                            .name = "--until",
                            .valueName = "STATUS",
                            .textKey = "help.parameter.until"},
                           AgentArguments::timeoutParameter},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
