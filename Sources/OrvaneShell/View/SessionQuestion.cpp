#include "OrvaneShell/View/SessionQuestion.h"

#include <fmt/format.h>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// The heading says what wants to act, the detail what it would do.
std::string textOf(const ApprovalPolicy::Request& request) {
    if (request.toolName.empty()) return request.detail;
    if (request.detail.empty()) return request.toolName;
    return request.toolName + ": " + request.detail;
}

}  // namespace

SessionQuestion SessionQuestion::of(const SessionController& session) {
    SessionQuestion question;
    if (const auto& request = session.approval().pendingRequest) question.text = Text::oneLine(textOf(*request));
    if (session.agent() == nullptr) return question;
    const AgentScreenReading& reading = session.agent()->terminal().reading();
    if (question.text.empty()) question.text = Text::oneLine(reading.question);
    for (const PrintedOption& option : reading.options) {
        if (option.number > 0)
            question.options.push_back({.number = option.number, .label = Text::oneLine(option.label)});
    }
    return question;
}

std::string SessionQuestion::line() const {
    std::string line = text;
    for (const Option& option : options)
        line += fmt::format("{}{} {}", line.empty() ? "" : "  ", option.number, option.label);
    return line;
}

}  // namespace orvane
