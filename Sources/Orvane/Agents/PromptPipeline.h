#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/Agents/PromptTarget.h"
#include "OrvaneCore/Agents/PromptState.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Types prompts into an agent, one after another, each exactly once: waits until the composer is free, pastes, presses
/// Return, and presses it again as long as the composer still shows the prompt. What cannot be delivered stays here as
/// failed, where a person sees it.
class PromptPipeline {
 public:
    struct Prompt {
        std::uint64_t number = 0;  ///< of this session, from 1
        std::string text;
        std::optional<std::string> model;
        PromptState state = PromptState::queued;
    };

    static constexpr Duration readinessInterval = std::chrono::milliseconds(200);
    /// 30 s of an agent that neither works nor is occupied, and does not become ready.
    static constexpr int readinessLimit = 150;
    static constexpr Duration resubmitDelay = std::chrono::milliseconds(1200);
    static constexpr int maximumReturns = 4;
    /// A prompt is pasted again when the program has read it and done nothing: some draw a composer long before they
    /// listen.
    static constexpr int maximumPastes = 20;
    /// Failed prompts are kept for people to see; more than this many lose the oldest.
    static constexpr std::size_t keptFailures = 100;

    /// Both must outlive it.
    PromptPipeline(MainLoop& loop, PromptTarget& target) : loop_(loop), target_(target) {}

    /// Takes a prompt and delivers it as soon as it can be. Returns its number.
    std::uint64_t send(std::string text, std::optional<std::string> model);
    /// Somebody else types: what Return would send from now on is theirs to decide.
    void noteTyped();
    /// The program has ended: what was not delivered has failed.
    void fail();
    /// No prompt is typed any more, and those that come from now on fail.
    void stop();
    /// Forgets prompts that stood in the composer and do so no longer: somebody has sent them on or taken them away.
    void review();

    /// Not delivered yet, or failed; in the order in which they were sent.
    const std::deque<Prompt>& prompts() const { return prompts_; }
    /// None for one that was delivered.
    const Prompt* prompt(std::uint64_t number) const;
    bool promptIsQueued() const;
    /// Why the prompt at the head waits; none when there is none or it is being typed.
    PromptObstacle obstacle() const { return obstacle_; }

 private:
    using Position = std::deque<Prompt>::iterator;

    Position find(std::uint64_t number);
    Position nextQueued();
    void takeNext();
    void tick();
    void flush();
    void deliver(Prompt& prompt);
    void paste(const Prompt& prompt);
    void pressReturn();
    void checkReturn();
    void checkSilence(Prompt& prompt);
    bool composerShows(const std::string& text);
    bool hasLost(const std::string& text);
    void settle(PromptState state);
    void giveUp();
    void noteFailure(Prompt& prompt);
    void forgetOldFailures();

    MainLoop& loop_;
    PromptTarget& target_;
    std::deque<Prompt> prompts_;
    std::uint64_t lastNumber_ = 0;
    PromptObstacle obstacle_ = PromptObstacle::none;

    int readinessTicks_ = 0;
    Registration readinessTimer_;

    std::uint64_t typing_ = 0;          ///< number of the prompt that has been pasted and waits for its Return to work
    int returns_ = 0;                   ///< pressed for it
    int pastes_ = 0;                    ///< how often it was pasted
    std::uint64_t revisionBefore_ = 0;  ///< of the target, at the last paste
    bool isHeldByDialog_ = false;
    bool isInOtherHands_ = false;  ///< somebody has typed since its Return
    Registration returnTimer_;
    bool hasStopped_ = false;
};

}  // namespace orvane
