#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"

#include <boost/json.hpp>

#include "Orvane/Agents/TerminalAgent.h"

namespace orvane {

JsonValue sessionJson(const SessionController& session) {
    boost::json::object row{{"id", session.id().lowerText()},
                            {"project", session.identity().projectID.lowerText()},
                            {"kind", rawValue(session.identity().kind)},
                            {"title", session.title()},
                            {"status", session.status().name()},
                            {"cwd", session.identity().projectPath},
                            {"pid", session.processId()},
                            {"attention", session.needsAttention()}};
    if (const auto* failed = std::get_if<SessionStatus::Failed>(&session.status().value)) {
        const ProcessEnd end = ProcessEnd::decoding(failed->exitCode);
        if (end.exitCode) row["exitCode"] = *end.exitCode;
        if (end.signal) row["signal"] = *end.signal;
    }
    return row;
}

JsonValue sessionAndContextJson(const SessionController& session) {
    JsonValue json = sessionJson(session);
    if (session.agent() == nullptr) return json;
    boost::json::object& row = json.as_object();
    if (const auto use = session.agent()->contextUse())
        row["context"] = {{"used", use->used}, {"window", use->window}, {"fraction", use->fraction}};
    const TranscriptWatch* transcript = session.agent()->transcript();
    if (transcript != nullptr && transcript->path()) row["transcript"] = *transcript->path();
    return json;
}

std::string statusText(const L10n& l10n, const JSONObject& session) {
    std::string status = l10n.text("status." + session.string("status"));
    if (const auto code = session.optionalInteger("exitCode")) status += " (" + std::to_string(*code) + ")";
    if (const auto signal = session.optionalInteger("signal")) {
        status += " (" + l10n.text("status.signal", *signal) + ")";
    }
    if (session.boolean("attention")) status += " !";
    return status;
}

}  // namespace orvane
