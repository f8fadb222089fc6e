#include "Orvane/Agents/TerminalAgent.h"

#include "Orvane/Agents/SessionController.h"
#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Agents/ContextWindowBudget.h"
#include "OrvaneCore/Agents/PromptTyping.h"
#include "OrvaneCore/Agents/ResumeIntent.h"
#include "OrvaneCore/Agents/Signals/ClaudeModelSwitch.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr Duration promptBlock = std::chrono::seconds(1);
constexpr std::string_view escape = "\x1b";
/// Cheap to look for in everything that is written.
constexpr std::string_view modelMarker = "et model to ";
constexpr std::size_t modelRows = 60;
constexpr std::string_view controlC = "\x03";

}  // namespace

TerminalAgent::TerminalAgent(SessionController& session, const Surroundings& surroundings)
    : session_(session),
      loop_(surroundings.loop),
      home_(surroundings.home),
      log_(surroundings.log),
      terminal_(session, loop_),
      watch_(session, terminal_, loop_, surroundings.home),
      prompts_(loop_, *this),
      controls_(
          session.identity().kind, terminal_, loop_, [this] { return obstacle(); },
          [this] {
              blockPrompts();
              watch_.noteOwnDialog(promptBlockedUntil_);
          }),
      answers_(terminal_, loop_, [this] { watch_.noteAnswer(); }),
      transcripts_(surroundings.transcripts),
      promptBlockedUntil_(loop_.now()) {}

void TerminalAgent::start() {
    watch_.start([this] { prompts_.review(); });
    const SessionController::Identity& identity = session_.identity();
    controls_.readDefaults(home_, identity.projectPath, identity.command.value_or(""));
    followTranscript();
}

void TerminalAgent::followTranscript() {
    const SessionController::Identity& identity = session_.identity();
    const auto provider = transcriptProvider(identity.kind);
    if (!transcripts_ || !provider) return;
    const ResumeIntent intent = ResumeIntent::of(identity.command.value_or(""));
    std::optional<std::string> id = session_.forcedTranscriptID();
    if (!id) id = intent.id;
    watch_.onInteraction = [this] {
        if (transcript_ != nullptr) transcript_->notePrompt();
    };
    transcript_ = std::make_unique<TranscriptWatch>(session_.id(),
                                                    SessionTelemetry{.kind = *provider,
                                                                     .projectPath = identity.projectPath,
                                                                     .startedAt = identity.startedAt,
                                                                     .resumeID = std::move(id),
                                                                     .mayContinueOlder = intent.continuesOlder},
                                                    loop_, *transcripts_,
                                                    [this](TranscriptWatch::News news) { noteTranscript(news); });
    transcript_->start();
}

void TerminalAgent::noteTranscript(TranscriptWatch::News news) {
    const TranscriptReading& reading = transcript_->reading();
    if (transcript_->writtenAt() >= session_.identity().startedAt) {
        controls_.noteTranscript(reading.model, reading.permissionMode);
        if (reading.phase) watch_.notePhase(*reading.phase, transcript_->writtenAt());
    } else if (!controls_.settings().modelName) {
        // What a conversation ran with when it was left may not be what it runs with now, but mostly is.
        controls_.noteTranscript(reading.model, {});
    }
    session_.noteTranscript(news);
}

std::optional<TerminalAgent::ContextUse> TerminalAgent::contextUse() const {
    const auto provider = transcriptProvider(session_.identity().kind);
    if (transcript_ == nullptr || !provider) return std::nullopt;
    const TranscriptReading& reading = transcript_->reading();
    if (!reading.contextUsed) return std::nullopt;
    // The transcript of Claude names the model without what marks a large window; its settings do not.
    const std::string model = controls_.settings().modelName.value_or(reading.model.value_or(""));
    const auto window = ContextWindowBudget::window(*provider, model, reading.contextWindow, *reading.contextUsed);
    if (!window) return std::nullopt;
    return ContextUse{.used = *reading.contextUsed,
                      .window = *window,
                      .fraction = ContextWindowBudget::usedFraction(*reading.contextUsed, *window, *provider)};
}

void TerminalAgent::stop() {
    watch_.stop();
    prompts_.stop();
    controls_.stop();
    answers_.stop();
    if (transcript_ != nullptr) transcript_->stop();
}

void TerminalAgent::noteExit() {
    stop();
    prompts_.fail();
}

void TerminalAgent::noteOutput(std::string_view bytes) {
    terminal_.noteOutput(bytes);
    if (session_.identity().kind == SessionKind::claude && bytes.contains(modelMarker)) readModel();
}

/// Claude says so when its user has switched the model; its transcript tells it with the next answer only.
void TerminalAgent::readModel() {
    const auto label = ClaudeModelSwitch::detectInTerminalText(terminal_.lastRows(modelRows));
    const auto model = label ? ClaudeModelSwitch::identifier(*label) : std::nullopt;
    if (!model) return;
    controls_.noteSwitchedModel(*model);
    session_.noteChange();
}

void TerminalAgent::type(std::string_view bytes) {
    noteInput(bytes);
    prompts_.noteTyped();
    terminal_.write(bytes);
}

void TerminalAgent::sendRaw(std::string_view text) {
    noteInput({});
    blockPrompts();
    terminal_.write(std::string(text) + "\r");
    if (AgentCommand::clearsContext(text)) noteClear();
}

void TerminalAgent::interrupt() {
    type(hasAgentTranscript(session_.identity().kind) ? escape : controlC);
}

void TerminalAgent::noteInput(std::string_view bytes) {
    const bool clears = !bytes.empty() && PromptTyping::completesClear(watch_.draft(), bytes);
    if (clears) return noteClear();
    clearAwaitingTranscript_ = false;
    watch_.noteInput(bytes);
}

void TerminalAgent::noteClear() {
    clearAwaitingTranscript_ = true;
    watch_.forget();
    if (transcript_ != nullptr) transcript_->noteClear();
    session_.noteClear();
}

PromptObstacle TerminalAgent::obstacle() {
    if (isWorking()) return PromptObstacle::working;
    const bool isWaiting = std::holds_alternative<SessionStatus::Waiting>(session_.status().value);
    if (isWaiting || isDialogUp()) {
        // A new session that asks something first (may it trust the folder?) keeps a prompt waiting: a person has to
        // learn of it.
        watch_.noteInteraction();
        return PromptObstacle::dialog;
    }
    const auto draft = watch_.draft();
    if (draft && !Text::trimmed(*draft).empty()) return PromptObstacle::draft;
    if (!draft && !isSettled()) return PromptObstacle::starting;
    const bool isSettling = controls_.isTyping() || loop_.now() < promptBlockedUntil_;
    return isSettling ? PromptObstacle::settling : PromptObstacle::none;
}

bool TerminalAgent::isWorking() const {
    const bool isWorking = std::holds_alternative<SessionStatus::Working>(session_.status().value);
    // Nothing tells when a program without patterns is done; a long silence has to do.
    const bool isCustom = session_.identity().kind == SessionKind::custom;
    return isWorking && !(isCustom && terminal_.silence().count() > StatusDecision::silenceThreshold);
}

bool TerminalAgent::isSettled() const {
    return terminal_.hasProducedOutput() && terminal_.silence() >= settledSilence && terminal_.age() >= bootGrace;
}

void TerminalAgent::blockPrompts() {
    promptBlockedUntil_ = loop_.now() + promptBlock;
}

bool TerminalAgent::runsModel(const std::string& model) const {
    return !hasAgentTranscript(session_.identity().kind) || controls_.runsModel(model);
}

void TerminalAgent::switchModel(const std::string& model) {
    // The composer was found free right before this.
    (void)controls_.setModel(model);
}

void TerminalAgent::logLine(const std::string& line) {
    if (log_) log_("session " + session_.id().lowerText() + " " + line);
}

void TerminalAgent::promptsChanged() {
    session_.noteChange();
}

void TerminalAgent::promptFailed() {
    session_.showNotice("shell.chat.notReady");
}

}  // namespace orvane
