#include "Orvane/Agents/AgentAnswers.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Agents/PromptTyping.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// Claude Code takes no Return in the first tenth of a second of a dialog.
constexpr Seconds guard{0.3};
constexpr Duration betweenKeys = std::chrono::milliseconds(300);

std::optional<int> numberOf(const std::string& text) {
    const std::string_view digits = Text::trimmed(text);
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

const PrintedOption* find(const std::vector<PrintedOption>& options, auto&& test) {
    const auto found = std::ranges::find_if(options, test);
    return found == options.end() ? nullptr : &*found;
}

}  // namespace

AgentAnswers::AgentAnswers(AgentTerminal& terminal, MainLoop& loop, std::function<void()> noteAnswer)
    : terminal_(terminal), loop_(loop), noteAnswer_(std::move(noteAnswer)) {}

std::expected<void, AnswerRefusal> AgentAnswers::approve() {
    const AgentScreenReading& reading = terminal_.reading();
    if (!reading.dialogUp) return std::unexpected(AnswerRefusal::nothingAsked);
    if (reading.takesSeveral) return std::unexpected(AnswerRefusal::notByKey);
    const bool isFirst = reading.selectedChoice == 0 || reading.options.empty() ||
                         reading.selectedChoice == reading.options.front().number;
    if (!isFirst) return std::unexpected(AnswerRefusal::anotherSelected);
    type(*ApprovalPolicy::keystrokes(ApprovalPolicy::Decision::approve), Keeps::selection);
    return {};
}

std::expected<void, AnswerRefusal> AgentAnswers::deny() {
    if (!terminal_.reading().dialogUp) return std::unexpected(AnswerRefusal::nothingAsked);
    type(*ApprovalPolicy::keystrokes(ApprovalPolicy::Decision::deny), Keeps::question);
    return {};
}

std::expected<void, AnswerRefusal> AgentAnswers::answer(const std::string& text) {
    const AgentScreenReading& reading = terminal_.reading();
    if (!reading.dialogUp) return std::unexpected(AnswerRefusal::nothingAsked);
    if (reading.takesSeveral) return std::unexpected(AnswerRefusal::notByKey);
    if (const auto number = numberOf(text)) return choose(*number);
    const PrintedOption* named = find(reading.options, [&](const PrintedOption& each) {
        return each.number > 0 && Text::equalsIgnoringCase(each.label, std::string(Text::trimmed(text)));
    });
    return named != nullptr ? choose(named->number) : say(text);
}

std::expected<void, AnswerRefusal> AgentAnswers::choose(int number) {
    const auto& options = terminal_.reading().options;
    const bool isOffered = find(options, [&](const PrintedOption& each) { return each.number == number; }) != nullptr;
    if (number < 1 || !isOffered) return std::unexpected(AnswerRefusal::noSuchOption);
    const auto keys =
        ApprovalPolicy::keystrokes(ApprovalPolicy::Response{ApprovalPolicy::Response::Option{number - 1}});
    if (!keys) return std::unexpected(AnswerRefusal::notByKey);
    type(*keys, Keeps::question);
    return {};
}

std::expected<void, AnswerRefusal> AgentAnswers::say(const std::string& text) {
    const AgentScreenReading& reading = terminal_.reading();
    const std::string line = Text::oneLine(PromptTyping::bytes(text, PromptTyping::Marks::none));
    const auto keys = ApprovalPolicy::keystrokes(ApprovalPolicy::Response{ApprovalPolicy::Response::Text{line}});
    if (!keys) return std::unexpected(AnswerRefusal::noSuchOption);
    const std::string words = keys->substr(0, keys->size() - 1);
    const auto sendWords = [this, words] {
        terminal_.write(words);
        timer_ = loop_.after(betweenKeys, [this] { terminal_.write("\r"); });
    };
    const bool isField = reading.request && reading.request->kind == ApprovalPolicy::Request::Kind::freeform;
    if (isField) {
        type({}, Keeps::question, sendWords);
        return {};
    }
    const PrintedOption* field =
        find(reading.options, [](const PrintedOption& each) { return each.freeText && each.number > 0; });
    if (field == nullptr || field->number > 9) return std::unexpected(AnswerRefusal::noSuchOption);
    type(std::to_string(field->number), Keeps::question,
         [this, sendWords] { timer_ = loop_.after(betweenKeys, [sendWords] { sendWords(); }); });
    return {};
}

void AgentAnswers::type(std::string keys, Keeps keeps, std::function<void()> then) {
    const AgentScreenReading asked = terminal_.reading();
    noteAnswer_();
    const auto write = [this, keys = std::move(keys), then = std::move(then)] {
        if (!keys.empty()) terminal_.write(keys);
        if (then) then();
    };
    const Duration wait = untilReady();
    if (wait <= Duration::zero()) return write();
    timer_ = loop_.after(wait, [this, asked, keeps, write] {
        if (isSame(asked, keeps)) write();
    });
}

bool AgentAnswers::isSame(const AgentScreenReading& asked, Keeps keeps) {
    const AgentScreenReading& now = terminal_.reading();
    if (!now.dialogUp || now.question != asked.question) return false;
    return keeps == Keeps::question || now.selectedChoice == asked.selectedChoice;
}

Duration AgentAnswers::untilReady() const {
    return durationOf(guard - terminal_.silence());
}

}  // namespace orvane
