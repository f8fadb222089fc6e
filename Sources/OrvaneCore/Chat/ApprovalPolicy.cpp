#include "OrvaneCore/Chat/ApprovalPolicy.h"

#include <algorithm>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::ApprovalPolicy {

namespace {

constexpr int highestDigit = 9;

/// The bytes of the text's first `count` characters without the word that the cut would break, where at least
/// `least` characters stay.
std::string_view cutAtWord(std::string_view text, std::size_t count, std::size_t least) {
    const std::string_view cut = Text::prefix(text, count);
    const std::size_t space = cut.rfind(' ');
    if (space == std::string_view::npos || Text::characterCount(cut.substr(0, space)) < least) return cut;
    return cut.substr(0, space);
}

}  // namespace

std::optional<std::string> keystrokes(Decision decision) {
    return decision == Decision::approve ? "\r" : "\x1b";
}

std::optional<std::string> keystrokes(const Response& response) {
    using Keys = std::optional<std::string>;
    return std::visit(Overloaded{[](const Response::Approve&) { return keystrokes(Decision::approve); },
                                 [](const Response::Deny&) { return keystrokes(Decision::deny); },
                                 [](const Response::Option& option) -> Keys {
                                     if (option.index < 0 || option.index >= highestDigit) return std::nullopt;
                                     return std::to_string(option.index + 1);
                                 },
                                 [](const Response::Text& answer) -> Keys {
                                     const std::string_view text = Text::trimmed(answer.text);
                                     if (text.empty()) return std::nullopt;
                                     return std::string(text) + "\r";
                                 }},
                      response.value);
}

bool canAct(Date emittedAt, Date now, bool stillWaiting, bool alreadyAnswered) {
    const Seconds age = now - emittedAt;
    return stillWaiting && !alreadyAnswered && age >= Seconds(0) && age <= staleAfter;
}

Request summarize(std::string_view toolName, std::string_view detail) {
    return {.kind = Request::Kind::approval,
            .toolName = clean(toolName, actionLabelLimit),
            .detail = clean(detail, detailLimit),
            .options = {},
            .questionIndex = {},
            .questionCount = {}};
}

std::string clean(std::string_view text, std::size_t limit) {
    std::string row = Text::oneLine(text);
    if (limit < 2 || Text::characterCount(row) <= limit) return row;
    return std::string(cutAtWord(row, limit - 1, (limit + 1) / 2)) + "…";
}

}  // namespace orvane::ApprovalPolicy
