#pragma once

#include <string>

#include "Orvane/Agents/AgentAnswers.h"
#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/L10n.h"

namespace orvane {

class SessionController;
class TerminalAgent;

/// What people are told of sessions, one line each.
namespace SessionTexts {

/// Why the program of the session was not started; it must have a launch failure.
std::string launchFailure(const L10n& l10n, const SessionController& session);

/// Why an answer was not typed.
std::string answerRefusal(const L10n& l10n, AnswerRefusal refusal, TerminalAgent& agent);

/// How long something has been so, in a few columns and without counting seconds: "3m".
std::string shortAge(const L10n& l10n, Seconds age);

}  // namespace SessionTexts

}  // namespace orvane
