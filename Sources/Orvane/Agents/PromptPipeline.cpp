#include "Orvane/Agents/PromptPipeline.h"

#include <algorithm>
#include <utility>

#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Agents/PromptTyping.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// Such a wait ends when somebody else is done, however long that takes.
bool waitsForOthers(PromptObstacle obstacle) {
    return obstacle == PromptObstacle::working || obstacle == PromptObstacle::dialog ||
           obstacle == PromptObstacle::draft;
}

const char* word(bool is) {
    return is ? "true" : "false";
}

}  // namespace

std::uint64_t PromptPipeline::send(std::string text, std::optional<std::string> model) {
    const bool isFirst = nextQueued() == prompts_.end();
    prompts_.push_back({.number = ++lastNumber_, .text = std::move(text), .model = std::move(model)});
    const std::uint64_t number = lastNumber_;
    target_.logLine(isFirst ? "queued" : "backlogged");
    if (hasStopped_) {
        fail();
        target_.promptFailed();
    } else if (isFirst) {
        takeNext();
    }
    target_.promptsChanged();
    return number;
}

void PromptPipeline::noteTyped() {
    isInOtherHands_ = typing_ != 0 && returns_ > 0;
}

void PromptPipeline::fail() {
    stop();
    for (Prompt& prompt : prompts_)
        prompt.state = PromptState::failed;
    forgetOldFailures();
    target_.promptsChanged();
}

void PromptPipeline::stop() {
    readinessTimer_.reset();
    returnTimer_.reset();
    typing_ = 0;
    obstacle_ = PromptObstacle::none;
    hasStopped_ = true;
}

const PromptPipeline::Prompt* PromptPipeline::prompt(std::uint64_t number) const {
    const auto found = std::ranges::find(prompts_, number, &Prompt::number);
    return found == prompts_.end() ? nullptr : &*found;
}

bool PromptPipeline::promptIsQueued() const {
    return std::ranges::any_of(prompts_, [](const Prompt& each) { return each.state == PromptState::queued; });
}

void PromptPipeline::review() {
    const auto hasGone = [this](const Prompt& each) {
        return each.state == PromptState::standing && !composerShows(each.text);
    };
    if (std::erase_if(prompts_, hasGone) > 0) target_.promptsChanged();
}

PromptPipeline::Position PromptPipeline::find(std::uint64_t number) {
    return std::ranges::find(prompts_, number, &Prompt::number);
}

PromptPipeline::Position PromptPipeline::nextQueued() {
    return std::ranges::find(prompts_, PromptState::queued, &Prompt::state);
}

void PromptPipeline::takeNext() {
    readinessTimer_.reset();
    readinessTicks_ = 0;
    obstacle_ = PromptObstacle::none;
    if (nextQueued() == prompts_.end()) return;
    obstacle_ = typing_ == 0 ? target_.obstacle() : PromptObstacle::settling;
    if (obstacle_ == PromptObstacle::none) return flush();
    readinessTimer_ = loop_.every(readinessInterval, {}, [this] { tick(); });
}

void PromptPipeline::tick() {
    if (nextQueued() == prompts_.end()) return readinessTimer_.reset();
    if (typing_ != 0) return;
    const PromptObstacle before = std::exchange(obstacle_, target_.obstacle());
    if (obstacle_ != before) target_.promptsChanged();
    if (waitsForOthers(obstacle_)) return;
    ++readinessTicks_;
    if (obstacle_ == PromptObstacle::none) return flush();
    if (readinessTicks_ >= readinessLimit) giveUp();
}

/// The composer is free.
void PromptPipeline::flush() {
    readinessTimer_.reset();
    const Position next = nextQueued();
    target_.logLine(std::string("flush composerReady=") + word(target_.draft().has_value()) +
                    " output=" + word(target_.hasProducedOutput()));
    if (const auto model = std::exchange(next->model, std::nullopt); model && !target_.runsModel(*model)) {
        target_.switchModel(*model);
        readinessTicks_ = 0;
        obstacle_ = PromptObstacle::settling;
        readinessTimer_ = loop_.every(readinessInterval, {}, [this] { tick(); });
        return;
    }
    deliver(*next);
    takeNext();
    target_.promptsChanged();
}

void PromptPipeline::deliver(Prompt& prompt) {
    prompt.state = PromptState::delivering;
    typing_ = prompt.number;
    pastes_ = 0;
    target_.noteDelivery();
    paste(prompt);
}

void PromptPipeline::paste(const Prompt& prompt) {
    ++pastes_;
    returns_ = 0;
    isHeldByDialog_ = false;
    isInOtherHands_ = false;
    revisionBefore_ = target_.revision();
    target_.blockPrompts();
    using PromptTyping::Marks;
    target_.write(PromptTyping::bytes(prompt.text, target_.takesPastes() ? Marks::paste : Marks::none));
    returnTimer_ = loop_.after(durationOf(PromptTyping::returnDelay(prompt.text)), [this] { pressReturn(); });
}

void PromptPipeline::pressReturn() {
    const Position typed = find(typing_);
    if (typed == prompts_.end()) return;
    if (target_.isDialogUp()) {
        // It would answer a question that came up between the paste and now.
        isHeldByDialog_ = true;
        returnTimer_ = loop_.after(readinessInterval, [this] { pressReturn(); });
        return;
    }
    if (std::exchange(isHeldByDialog_, false) && hasLost(typed->text)) {
        return settle(returns_ > 0 ? PromptState::delivered : PromptState::failed);
    }
    const bool clears = returns_ == 0 && AgentCommand::clearsContext(typed->text);
    ++returns_;
    returnTimer_ = loop_.after(resubmitDelay, [this] { checkReturn(); });
    target_.write("\r");
    if (clears) target_.noteClear();
}

void PromptPipeline::checkReturn() {
    const Position typed = find(typing_);
    if (typed == prompts_.end()) return;
    if (target_.revision() == revisionBefore_) return checkSilence(*typed);
    if (!composerShows(typed->text)) return settle(PromptState::delivered);
    if (target_.isProvenWorking()) {
        // Maybe on this prompt, and its screen is late; a second Return would be one too many.
        returnTimer_ = loop_.after(resubmitDelay, [this] { checkReturn(); });
        return;
    }
    if (isInOtherHands_ || returns_ >= maximumReturns) return settle(PromptState::standing);
    target_.logLine("resubmit attempt=" + std::to_string(returns_));
    pressReturn();
}

/// Whether the composer is in sight and shows something else, or nothing: a dialog has swallowed the paste, or somebody
/// has sent it or taken it away. A Return would send what is not ours.
bool PromptPipeline::hasLost(const std::string& text) {
    return target_.draft().has_value() && !composerShows(text);
}

/// Not a byte has come since the paste: no program with a composer that took it is so quiet.
void PromptPipeline::checkSilence(Prompt& prompt) {
    const auto hasRead = target_.hasReadInput();
    if (!hasRead || !target_.draft()) return settle(PromptState::delivered);
    if (!*hasRead) {
        returnTimer_ = loop_.after(resubmitDelay, [this] { checkReturn(); });
        return;
    }
    if (pastes_ < maximumPastes && !isInOtherHands_) {
        target_.logLine("repaste attempt=" + std::to_string(pastes_));
        return paste(prompt);
    }
    settle(PromptState::failed);
}

bool PromptPipeline::composerShows(const std::string& text) {
    const auto draft = target_.draft();
    return draft && PromptTyping::isShown(*draft, text);
}

/// The prompt that was being typed needs no more of us.
void PromptPipeline::settle(PromptState state) {
    const Position typed = find(std::exchange(typing_, 0));
    returnTimer_.reset();
    if (state == PromptState::delivered) {
        prompts_.erase(typed);
    } else if (state == PromptState::failed) {
        noteFailure(*typed);
    } else {
        typed->state = state;
    }
    target_.promptsChanged();
}

void PromptPipeline::giveUp() {
    noteFailure(*nextQueued());
    takeNext();
    target_.promptsChanged();
}

void PromptPipeline::noteFailure(Prompt& prompt) {
    prompt.state = PromptState::failed;
    target_.logLine("deliveryFailed len=" + std::to_string(Text::characterCount(prompt.text)));
    forgetOldFailures();
    target_.promptFailed();
}

void PromptPipeline::forgetOldFailures() {
    auto failures = std::ranges::count(prompts_, PromptState::failed, &Prompt::state);
    while (failures-- > static_cast<std::ptrdiff_t>(keptFailures))
        prompts_.erase(std::ranges::find(prompts_, PromptState::failed, &Prompt::state));
}

}  // namespace orvane
