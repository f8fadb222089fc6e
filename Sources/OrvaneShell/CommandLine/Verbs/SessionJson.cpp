#include "OrvaneShell/CommandLine/Verbs/SessionJson.h"

#include <boost/json.hpp>

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
