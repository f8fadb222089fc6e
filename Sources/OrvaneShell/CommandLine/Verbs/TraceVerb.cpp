#include <boost/json.hpp>
#include <ostream>

#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/History/ConversationTrace.h"
#include "OrvaneCore/Transcripts/TraceText.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;

int run(ClientContext& client, const Arguments& arguments) {
    const bool isJson = arguments.has("json");
    const auto print = [&](const JsonValue& result) {
        if (isJson) return client.printJson(result);
        client.output << JSONObject(result).string("text");
    };
    return client.ask("trace", {{"id", arguments.value("session")}, {"json", isJson}}, print, HostStart::ifNeeded);
}

/// Whose calls are asked for.
struct Subject {
    /// Of the session, or the agent's own of a past conversation.
    std::string id;
    std::string title;
    TranscriptProvider provider = TranscriptProvider::claude;
    std::string projectPath;
    std::string filePath;
};

std::expected<Subject, Refusal> subjectOf(const HostContext& host, const SessionController& session) {
    const auto provider = transcriptProvider(session.identity().kind);
    const TerminalAgent* const agent = session.agent();
    if (!provider || agent == nullptr || agent->transcript() == nullptr)
        return std::unexpected(Refusal{.message = host.l10n.text("error.noTranscript", session.title())});
    const auto& path = agent->transcript()->path();
    if (!path) return std::unexpected(Refusal{.message = host.l10n.text("error.noTranscriptYet", session.title())});
    return Subject{.id = session.id().lowerText(),
                   .title = session.title(),
                   .provider = *provider,
                   .projectPath = session.identity().projectPath,
                   .filePath = *path};
}

Subject subjectOf(const SessionRecord& record) {
    return {.id = record.id,
            .title = record.title,
            .provider = record.provider,
            .projectPath = record.projectPath,
            .filePath = record.filePath};
}

enum class Form { text, json };

JsonValue json(const Subject& subject, const TraceReport& report) {
    boost::json::object object = report.encode().as_object();
    object["id"] = subject.id;
    object["title"] = subject.title;
    object["provider"] = rawValue(subject.provider);
    object["projectPath"] = subject.projectPath;
    object["filePath"] = subject.filePath;
    return object;
}

/// On a thread of the pool.
Outcome read(const Subject& subject, Form form, const L10n& l10n) {
    SubagentReader subagents;
    const auto report = ConversationTrace::read(subject.filePath, subject.provider, subject.projectPath, subagents);
    if (!report) return Refusal{.message = l10n.text("history.unreadable", report.error().message())};
    if (form == Form::json) return json(subject, *report);
    return JsonValue{{"text", TraceText::text(subject.title, *report, l10n)}};
}

void answer(const HostContext& host, const Subject& subject, Form form) {
    runInBackground(
        host.store.pool(), host.store.loop(), [subject, form, l10n = host.l10n] { return read(subject, form, l10n); },
        [answer = host.answer](const Outcome& outcome) { answer(outcome); });
}

/// A session goes before a past conversation whose id begins alike.
Outcome serve(HostContext& host, const JSONObject& arguments) {
    const std::string id = arguments.string("id");
    const Form form = arguments.boolean("json") ? Form::json : Form::text;
    const auto session = Selection::session(host, id);
    if (session) {
        const auto subject = subjectOf(host, **session);
        if (!subject) return subject.error();
        answer(host, *subject, form);
        return Later{};
    }
    host.history.refresh([host, id, form] {
        const auto record = Selection::conversation(host, id);
        if (!record) return host.answer(record.error());
        answer(host, subjectOf(*record), form);
    });
    return Later{};
}

}  // namespace

Verb trace() {
    return {.name = "trace",
            .parameters = {{.kind = Kind::required, .name = "SESSION", .textKey = "help.parameter.traced"},
                           {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
