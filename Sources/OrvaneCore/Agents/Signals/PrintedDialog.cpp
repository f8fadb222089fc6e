#include "OrvaneCore/Agents/Signals/PrintedDialog.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Agents/Signals/KeyHints.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

using Kind = ApprovalPolicy::Request::Kind;

constexpr std::size_t headingLimit = 80;  ///< characters

bool hasHintBelow(AgentRowSpan rows, std::size_t last) {
    return std::ranges::any_of(rows.subspan(last + 1), [](const AgentRow& row) { return KeyHints::decides(row.text); });
}

bool isAnswered(const ChoiceList& list) {
    return std::ranges::any_of(list.options, [](const PrintedOption& option) { return option.isTicked == true; });
}

PrintedDialog dialogOf(AgentRowSpan rows, ChoiceList list) {
    const auto answered = isAnswered(list) ? DialogHead::Answered::yes : DialogHead::Answered::no;
    DialogHead head = DialogHead::above(rows, list.firstRow, answered);
    const bool hasHint = hasHintBelow(rows, list.lastRow);
    return {.list = std::move(list), .head = std::move(head), .hasHint = hasHint};
}

/// Labels of the options that a button can stand for.
std::vector<std::string> offered(const std::vector<PrintedOption>& options) {
    std::vector<std::string> labels;
    for (const PrintedOption& option : options) {
        if (!option.freeText) labels.push_back(option.label);
    }
    return labels;
}

/// Whether the digit n types the nth offered option.
bool areDigitsTheirPlaces(const std::vector<PrintedOption>& options) {
    int place = 0;
    return std::ranges::all_of(
        options, [&](const PrintedOption& option) { return option.freeText || option.number == ++place; });
}

}  // namespace

std::optional<PrintedDialog> PrintedDialog::find(AgentRowSpan rows, Unnumbered unnumbered) {
    if (auto list = ChoiceList::numbered(rows)) {
        PrintedDialog dialog = dialogOf(rows, std::move(*list));
        const bool isLive = dialog.list.isLive() && dialog.list.options.size() > 1;
        if (isLive || dialog.hasHint) return dialog;
    }
    if (unnumbered == Unnumbered::ignored) return std::nullopt;
    if (auto list = ChoiceList::unnumbered(rows)) {
        PrintedDialog dialog = dialogOf(rows, std::move(*list));
        if (dialog.hasHint) return dialog;
    }
    return std::nullopt;
}

bool PrintedDialog::takesSeveral() const {
    return std::ranges::any_of(list.options, [](const PrintedOption& option) { return option.isTicked.has_value(); });
}

std::optional<ApprovalPolicy::Request> PrintedDialog::request(std::initializer_list<std::string_view> consents) const {
    if (head.question.empty()) return std::nullopt;
    const std::string question = Text::caseFolded(head.question);
    const bool isConsent =
        std::ranges::any_of(consents, [&](std::string_view consent) { return question.contains(consent); });
    ApprovalPolicy::Request request{.kind = isConsent ? Kind::approval : Kind::choice,
                                    .toolName = ApprovalPolicy::clean(head.heading, headingLimit),
                                    .detail = ApprovalPolicy::clean(head.question, ApprovalPolicy::detailLimit),
                                    .options = offered(list.options),
                                    .questionIndex = head.questionIndex,
                                    .questionCount = head.questionCount};
    if (request.options.empty()) request.kind = Kind::freeform;
    if (takesSeveral() || !areDigitsTheirPlaces(list.options)) {
        request.kind = Kind::revealOnly;
        request.options.clear();
    }
    return request;
}

}  // namespace orvane
