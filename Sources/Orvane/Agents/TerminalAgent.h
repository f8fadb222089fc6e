#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Orvane/Agents/AgentAnswers.h"
#include "Orvane/Agents/AgentControls.h"
#include "Orvane/Agents/AgentStatusWatch.h"
#include "Orvane/Agents/AgentTerminal.h"
#include "Orvane/Agents/PromptPipeline.h"
#include "Orvane/History/TranscriptWatch.h"

namespace orvane {

class SessionController;

/// An agent that runs in a terminal: what it does, what it asks, and everything that is typed into it. Main thread
/// only.
class TerminalAgent final : private PromptTarget {
 public:
    /// A program that has drawn something and been quiet for so long may be ready though no composer is recognised.
    static constexpr Seconds settledSilence{0.8};
    static constexpr Seconds bootGrace{1.2};

    struct Surroundings {
        MainLoop& loop;
        /// The user's home folder, where agents keep their files.
        std::string home;
        std::function<void(const std::string& line)> log;
        /// Without them nobody reads its transcript.
        std::optional<TranscriptWatch::Files> transcripts;
    };

    /// The session owns it; the loop must outlive both.
    TerminalAgent(SessionController& session, const Surroundings& surroundings);

    /// The program has been started.
    void start();
    /// The session is told to end: nothing is typed or decided any more.
    void stop();
    void noteExit();
    void noteOutput(std::string_view bytes);
    void noteTitle() { watch_.noteTitle(); }

    /// Bytes that a user typed.
    void type(std::string_view bytes);
    /// Text and Return at once.
    void sendRaw(std::string_view text);
    void interrupt();
    PromptPipeline& prompts() { return prompts_; }
    const PromptPipeline& prompts() const { return prompts_; }
    AgentControls& controls() { return controls_; }
    AgentAnswers& answers() { return answers_; }
    AgentStatusWatch& watch() { return watch_; }
    AgentTerminal& terminal() { return terminal_; }
    /// Null for one that writes none, or before it is started.
    const TranscriptWatch* transcript() const { return transcript_.get(); }
    /// Tokens.
    struct ContextUse {
        std::int64_t used = 0;
        std::int64_t window = 0;
        /// Of what it may use before it makes room, 0 to 1.
        double fraction = 0;
    };
    /// How full its context is; none until the transcript tells.
    std::optional<ContextUse> contextUse() const;
    /// Whether a transcript is still to come after "/clear".
    bool clearAwaitsTranscript() const { return clearAwaitingTranscript_; }

 private:
    PromptObstacle obstacle() override;
    std::optional<std::string> draft() override { return terminal_.reading().draft; }
    bool isProvenWorking() override { return watch_.isProvenWorking(); }
    bool isDialogUp() override { return terminal_.reading().dialogUp; }
    void write(std::string_view bytes) override { terminal_.write(bytes); }
    bool takesPastes() const override { return terminal_.takesPastes(); }
    std::uint64_t revision() const override { return terminal_.revision(); }
    std::optional<bool> hasReadInput() const override { return terminal_.hasReadInput(); }
    void noteDelivery() override { noteInput({}); }
    void blockPrompts() override;
    bool runsModel(const std::string& model) const override;
    void switchModel(const std::string& model) override;
    bool hasProducedOutput() const override { return terminal_.hasProducedOutput(); }
    void noteClear() override;
    void logLine(const std::string& line) override;
    void promptsChanged() override;
    void promptFailed() override;

    void noteInput(std::string_view bytes);
    void readModel();
    void followTranscript();
    void noteTranscript(TranscriptWatch::News news);
    bool isWorking() const;
    bool isSettled() const;

    SessionController& session_;
    MainLoop& loop_;
    std::string home_;
    std::function<void(const std::string&)> log_;
    AgentTerminal terminal_;
    AgentStatusWatch watch_;
    PromptPipeline prompts_;
    AgentControls controls_;
    AgentAnswers answers_;
    std::optional<TranscriptWatch::Files> transcripts_;
    std::unique_ptr<TranscriptWatch> transcript_;
    Instant promptBlockedUntil_;
    bool clearAwaitingTranscript_ = false;
};

}  // namespace orvane
