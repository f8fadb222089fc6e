#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/Agents/AgentTerminal.h"
#include "Orvane/Agents/ClaudeSessionFile.h"
#include "Orvane/Agents/HookFeedFile.h"
#include "OrvaneCore/Agents/StatusDecision.h"
#include "OrvaneCore/Support/Regex.h"

namespace orvane {

class SessionController;

/// Works out what an agent in a terminal is doing, from what it draws, its title, its hooks, its own files and what is
/// typed. Each of these lags or is missing at times; `StatusDecision` weighs them. Main thread only.
class AgentStatusWatch {
 public:
    static constexpr Duration interval = std::chrono::milliseconds(1500);
    static constexpr Duration tolerance = std::chrono::milliseconds(300);

    /// All must outlive it. `home` is the user's home folder.
    AgentStatusWatch(SessionController& session, AgentTerminal& terminal, MainLoop& loop, const std::string& home);

    /// `onLook` runs after every look of the timer.
    void start(std::function<void()> onLook);
    void stop();

    /// The words of this file count from now on.
    void useHooks(HookFeedFile file) { hookFeed_ = std::move(file); }
    /// Bytes that a user types, or none for a prompt of ours. Before they are written.
    void noteInput(std::string_view bytes);
    /// The program has changed its title.
    void noteTitle();
    /// A question was answered by us.
    void noteAnswer();
    /// What the transcript says, and when it was last written to: an end of a turn that is older than the prompt is not
    /// the prompt's.
    void notePhase(AgentPhase phase, Date writtenAt);
    /// The conversation begins anew.
    void forget();
    /// Somebody has given it something to do.
    void noteInteraction();
    /// Runs whenever that is so.
    std::function<void()> onInteraction;

    /// Looks now, as every interval.
    void tick();

    /// The composer as the next key meets it: what was typed a moment ago counts before the screen shows it.
    std::optional<std::string> draft();
    /// A dialog that comes up until then belongs to a command of ours, which answers it itself.
    void noteOwnDialog(Instant until) { ownDialogUntil_ = until; }

    /// Whether anything but what was typed says so at this moment.
    bool isProvenWorking();

 private:
    void readHooks();
    void readStatusFile();
    void readTitle();
    SilenceVerdict settled(SilenceVerdict titleVerdict);
    void lookForDialog();
    void noteTold();
    void decide();
    void noteAskedAnew();
    StatusLook look();
    AgentStatusRule::PatternEvidence matchPatterns();
    void noteTyped(std::string_view bytes);
    bool isWaiting() const;
    Date wallNow() const;

    SessionController& session_;
    AgentTerminal& terminal_;
    MainLoop& loop_;
    std::vector<Regex> busyMatchers_;
    std::vector<Regex> waitingMatchers_;
    Registration timer_;

    bool userHasInteracted_ = false;
    std::optional<Instant> lastRealInputAt_;
    Date lastAnsweringInputAt_;
    Date lastSubmissionAt_;
    std::string typedSinceReturn_;

    std::optional<HookFeedFile> hookFeed_;
    std::optional<AgentPhase> hookPhase_;
    bool hookEventsSeen_ = false;
    bool hookEventsArrived_ = false;
    std::optional<AgentPhase> agentPhase_;

    ClaudeSessionFile sessionFile_;
    std::string waitingFor_;
    SilenceVerdict statusFile_ = SilenceVerdict::unknown;
    SilenceVerdict title_ = SilenceVerdict::unknown;
    bool titleTells_ = false;  ///< this agent has shown by its title that it works
    std::optional<Instant> titleEndsWorkAt_;
    Registration titleTimer_;
    bool hasNews_ = false;
    std::optional<Instant> toldWorkingSince_;

    bool dialogOnScreen_ = false;
    Instant ownDialogUntil_;
    int waitingEvidenceMisses_ = 0;
};

}  // namespace orvane
