#include "OrvaneCore/Transcripts/PendingTool.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/CallTarget.h"

namespace orvane::PendingTool {

namespace {

constexpr std::size_t longestName = 80;

std::vector<std::string> labels(const TranscriptRecord& question) {
    std::vector<std::string> all;
    for (const TranscriptRecord& option : question.elements("options")) {
        std::string label =
            ApprovalPolicy::clean(option.string("label").value_or(""), ApprovalPolicy::actionLabelLimit);
        // The digit of an option's place answers it: one that cannot be read would move the others.
        if (label.empty()) return {};
        all.push_back(std::move(label));
    }
    return all;
}

/// None when it cannot be read.
std::optional<ApprovalPolicy::Request> choice(std::string_view toolName, const TranscriptRecord& input) {
    const auto questions = input.elements("questions");
    if (questions.empty()) return std::nullopt;
    ApprovalPolicy::Request request = {
        .kind = ApprovalPolicy::Request::Kind::choice,
        .toolName = ApprovalPolicy::clean(toolName, longestName),
        .detail = ApprovalPolicy::clean(questions.front().string("question").value_or(""), ApprovalPolicy::detailLimit),
        .options = labels(questions.front()),
        .questionIndex = {},
        .questionCount = {},
    };
    if (request.detail.empty() || request.options.empty()) return std::nullopt;
    if (questions.size() > 1) {
        request.questionIndex = 1;
        request.questionCount = static_cast<int>(questions.size());
    }
    return request;
}

}  // namespace

void note(const TranscriptRecord& toolUse, TranscriptReading& reading) {
    const std::string_view name = toolUse.string("name").value_or("");
    const TranscriptRecord input = toolUse["input"];
    const std::string target = ApprovalPolicy::clean(CallTarget::of(input).value_or(""), ApprovalPolicy::detailLimit);
    if (std::string shown = ApprovalPolicy::clean(name, longestName); !shown.empty()) {
        reading.pendingToolName = std::move(shown);
    }
    if (!target.empty()) reading.pendingToolTarget = target;
    if (name == "AskUserQuestion") reading.pendingRequest = choice(name, input);
}

}  // namespace orvane::PendingTool
