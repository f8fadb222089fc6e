#include "OrvaneShell/Texts/SessionTexts.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Agents/LaunchPlan.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::SessionTexts {

std::string launchFailure(const L10n& l10n, const SessionController& session) {
    const LaunchFailure& failure = *session.launchFailure();
    const SystemError error = failure.error.value_or(SystemError());
    switch (failure.reason) {
        case LaunchFailure::Reason::commandHasNul:
            return l10n.text("error.commandHasNul");
        case LaunchFailure::Reason::commandTooLong:
            return l10n.text("error.commandTooLong", LaunchPlan::maximumCommandSize);
        case LaunchFailure::Reason::folderUnusable: {
            const char* key =
                error.number == ENOENT || error.number == ENOTDIR ? "error.pathMissing" : "error.pathUnreadable";
            return l10n.text(key, Text::oneLine(session.identity().projectPath));
        }
        case LaunchFailure::Reason::notStarted:
            return l10n.text("error.notStartedBecause", rawValue(session.identity().kind), error.message());
    }
    std::unreachable();
}

std::string answerRefusal(const L10n& l10n, AnswerRefusal refusal, TerminalAgent& agent) {
    std::string offered;
    for (const PrintedOption& option : agent.terminal().reading().options) {
        if (option.number > 0)
            offered += (offered.empty() ? "" : ", ") + std::to_string(option.number) + " " + option.label;
    }
    switch (refusal) {
        case AnswerRefusal::nothingAsked:
            return l10n.text("error.nothingAsked");
        case AnswerRefusal::anotherSelected:
            return l10n.text("error.anotherSelected", agent.terminal().reading().selectedChoice);
        case AnswerRefusal::noSuchOption:
            return l10n.text("error.noSuchOption", offered);
        case AnswerRefusal::notByKey:
            return l10n.text("error.notByKey");
    }
    std::unreachable();
}

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;

}  // namespace

std::string shortAge(const L10n& l10n, Seconds age) {
    const double seconds = std::max(0.0, age.count());
    if (seconds < minute) return l10n.text("age.short.now");
    if (seconds < hour) return l10n.text("age.short.minutes", static_cast<long long>(seconds / minute));
    if (seconds < day) return l10n.text("age.short.hours", static_cast<long long>(seconds / hour));
    return l10n.text("age.short.days", static_cast<long long>(seconds / day));
}

}  // namespace orvane::SessionTexts
