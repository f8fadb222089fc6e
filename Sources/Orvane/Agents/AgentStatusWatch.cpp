#include "Orvane/Agents/AgentStatusWatch.h"

#include <algorithm>
#include <utility>

#include "Orvane/Agents/SessionController.h"
#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Agents/PromptTyping.h"
#include "OrvaneCore/Agents/Signals/AgentTitle.h"
#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"
#include "OrvaneCore/Agents/Signals/PromptSubmission.h"
#include "OrvaneCore/Agents/Signals/TerminalOutputScanner.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// Rows that an agent's own patterns are looked for in.
constexpr std::size_t patternRows = 20;
/// What is typed may be on its way to the screen for so long.
constexpr Duration echoTime = std::chrono::seconds(1);
constexpr std::string_view deleteBackward = "\x7f";
/// Bytes of one input that are remembered until they are seen.
constexpr std::size_t typedLimit = 256;
/// Claude Code takes the sign of work from its title up to 0.7 s before it draws a question.
constexpr Duration claudeTitleLead = std::chrono::seconds(1);

std::vector<Regex> compiled(const std::vector<std::string>& patterns) {
    std::vector<Regex> matchers;
    for (const std::string& pattern : patterns) {
        if (auto matcher = Regex::compile(pattern, {.ignoresCase = true})) matchers.push_back(*std::move(matcher));
    }
    return matchers;
}

bool anyMatches(const std::vector<Regex>& matchers, const std::string& text) {
    return std::ranges::any_of(matchers, [&](const Regex& each) { return each.matches(text); });
}

}  // namespace

AgentStatusWatch::AgentStatusWatch(SessionController& session, AgentTerminal& terminal, MainLoop& loop,
                                   const std::string& home)
    : session_(session), terminal_(terminal), loop_(loop), sessionFile_(home), ownDialogUntil_(loop.now()) {
    if (const auto& spec = session.identity().agentSpec) {
        busyMatchers_ = compiled(spec->busyPatterns);
        waitingMatchers_ = compiled(spec->waitingPatterns);
    }
}

void AgentStatusWatch::start(std::function<void()> onLook) {
    timer_ = loop_.every(interval, tolerance, [this, onLook = std::move(onLook)] {
        tick();
        onLook();
    });
}

void AgentStatusWatch::stop() {
    timer_.reset();
    titleTimer_.reset();
    hookFeed_.reset();
}

void AgentStatusWatch::noteInput(std::string_view bytes) {
    const bool submits = bytes.empty() || PromptSubmission::submits(bytes, draft());
    noteTyped(bytes);
    if (submits && !std::holds_alternative<SessionStatus::Working>(session_.status().value)) {
        agentPhase_ = AgentPhase::running;
    }
    if (submits || session_.identity().kind == SessionKind::claude || DialogAnswer::closesDialog(bytes)) noteAnswer();
    // Of what could not be told to be a prompt a Return is one as likely as not.
    if (!submits && bytes.contains('\r') && onInteraction) onInteraction();
    if (!submits) return;
    noteInteraction();
    lastSubmissionAt_ = wallNow();
    session_.setStatus({SessionStatus::Working{}}, StatusSource::input);
}

void AgentStatusWatch::noteInteraction() {
    userHasInteracted_ = true;
    if (onInteraction) onInteraction();
}

void AgentStatusWatch::notePhase(AgentPhase phase, Date writtenAt) {
    if (phase == AgentPhase::turnEnded && writtenAt < lastSubmissionAt_) return;
    agentPhase_ = phase;
}

void AgentStatusWatch::noteAnswer() {
    lastAnsweringInputAt_ = wallNow();
    statusFile_ = SilenceVerdict::unknown;  // it does not know of the answer yet
    if (hookPhase_ == AgentPhase::awaitingApproval) hookPhase_ = AgentPhase::running;
    if (!isWaiting()) {
        // An answer can be faster than the look that finds its dialog.
        lookForDialog();
        if (!dialogOnScreen_) return;
    }
    session_.approval().answer(wallNow());
    dialogOnScreen_ = false;
    agentPhase_ = AgentPhase::running;
    session_.setStatus({SessionStatus::Working{}}, StatusSource::input);
}

std::optional<std::string> AgentStatusWatch::draft() {
    std::optional<std::string> draft = terminal_.reading().draft;
    const bool mayBeOnItsWay = lastRealInputAt_ && loop_.now() - *lastRealInputAt_ < echoTime;
    if (draft && mayBeOnItsWay && typedSinceReturn_.starts_with(Text::trimmed(*draft))) draft = typedSinceReturn_;
    return draft;
}

void AgentStatusWatch::noteTyped(std::string_view bytes) {
    lastRealInputAt_ = loop_.now();
    if (const std::size_t end = bytes.find_last_of("\r\n"); end != std::string_view::npos) {
        typedSinceReturn_.clear();
        bytes.remove_prefix(end + 1);
        if (bytes.empty()) return;
    }
    if (bytes == deleteBackward) {
        const std::size_t count = Text::characterCount(typedSinceReturn_);
        typedSinceReturn_ = Text::prefix(typedSinceReturn_, count - std::min<std::size_t>(count, 1));
        return;
    }
    const std::string text = TerminalOutputScanner::textOf(bytes.substr(0, typedLimit));
    // Of what other keys do to the text only the screen tells.
    text.empty() ? typedSinceReturn_.clear() : void(typedSinceReturn_ += text);
}

void AgentStatusWatch::noteTitle() {
    readTitle();
    if (!hasNews_) return;
    if (session_.identity().kind == SessionKind::claude) readStatusFile();
    lookForDialog();
    decide();
}

void AgentStatusWatch::forget() {
    agentPhase_.reset();
    hookPhase_.reset();
    userHasInteracted_ = false;
    dialogOnScreen_ = false;
    typedSinceReturn_.clear();
}

void AgentStatusWatch::tick() {
    if (session_.hasExited()) return;
    hookEventsArrived_ = false;
    if (session_.identity().kind == SessionKind::claude) {
        readHooks();
        readStatusFile();
    }
    readTitle();
    lookForDialog();
    decide();
}

void AgentStatusWatch::readHooks() {
    if (!hookFeed_) return;
    const auto events = ClaudeHookFeed::events(hookFeed_->readNew());
    if (events.empty()) return;
    hookEventsSeen_ = hookEventsArrived_ = true;
    hookPhase_ = ClaudeHookFeed::phase(events, hookPhase_);
    // Its command line may have given it the first prompt.
    if (std::ranges::find(events, ClaudeHookEvent::prompt) != events.end()) noteInteraction();
}

void AgentStatusWatch::readStatusFile() {
    const auto said = sessionFile_.read(session_.processId());
    const SilenceVerdict verdict = said
                                       ? said->trustedVerdict(dateOf(terminal_.lastOutputTime()), lastAnsweringInputAt_)
                                       : SilenceVerdict::unknown;
    waitingFor_ = said ? said->waitingFor : std::string();
    if (std::exchange(statusFile_, verdict) != verdict && verdict != SilenceVerdict::unknown) hasNews_ = true;
    noteTold();
}

void AgentStatusWatch::readTitle() {
    SilenceVerdict verdict = AgentTitle::verdict(session_.identity().kind, terminal_.title());
    if (verdict == SilenceVerdict::working || verdict == SilenceVerdict::needsUser) titleTells_ = true;
    // A title without a sign tells that the agent is idle only of one that gives such signs.
    const bool isGemini = session_.identity().kind == SessionKind::gemini;
    if (!titleTells_ && !isGemini) verdict = SilenceVerdict::unknown;
    if (titleTells_ && verdict == SilenceVerdict::unknown) verdict = SilenceVerdict::finished;
    verdict = settled(verdict);
    if (std::exchange(title_, verdict) != verdict && verdict != SilenceVerdict::unknown) hasNews_ = true;
    noteTold();
}

/// A title of Claude that no longer tells of work is believed when no question has followed it.
SilenceVerdict AgentStatusWatch::settled(SilenceVerdict titleVerdict) {
    const bool endsWork = titleVerdict == SilenceVerdict::finished && title_ == SilenceVerdict::working;
    if (!endsWork || session_.identity().kind != SessionKind::claude) {
        titleEndsWorkAt_.reset();
        titleTimer_.reset();
        return titleVerdict;
    }
    if (!titleEndsWorkAt_) {
        titleEndsWorkAt_ = loop_.now() + claudeTitleLead;
        titleTimer_ = loop_.after(claudeTitleLead, [this] { noteTitle(); });
    }
    return loop_.now() < *titleEndsWorkAt_ ? SilenceVerdict::working : titleVerdict;
}

void AgentStatusWatch::noteTold() {
    const bool toldWorking = title_ == SilenceVerdict::working || statusFile_ == SilenceVerdict::working;
    if (!toldWorking) {
        toldWorkingSince_.reset();
    } else if (!toldWorkingSince_) {
        toldWorkingSince_ = loop_.now();
    }
}

void AgentStatusWatch::lookForDialog() {
    dialogOnScreen_ = false;
    if (loop_.now() < ownDialogUntil_) return;
    const bool isTold = title_ == SilenceVerdict::needsUser || statusFile_ == SilenceVerdict::needsUser;
    if (session_.identity().kind == SessionKind::custom || (!userHasInteracted_ && !isTold)) return;
    const AgentScreenReading& reading = terminal_.reading();
    if (!reading.dialogUp && !isTold) return;
    ApprovalPolicy::Request request = reading.request.value_or(
        ApprovalPolicy::Request{.kind = ApprovalPolicy::Request::Kind::revealOnly, .detail = waitingFor_});
    if (session_.approval().isStillClosing(request, wallNow())) return;
    dialogOnScreen_ = reading.dialogUp;
    session_.noteRequest(request);
}

bool AgentStatusWatch::isProvenWorking() {
    readTitle();
    return title_ == SilenceVerdict::working || statusFile_ == SilenceVerdict::working || terminal_.reading().busy;
}

void AgentStatusWatch::decide() {
    const StatusDecision decision = StatusDecision::decide(look());
    hasNews_ = false;
    waitingEvidenceMisses_ = decision.waitingEvidenceMisses;
    if (decision.provesInteraction) noteInteraction();
    if (!decision.status) return;
    if (std::holds_alternative<SessionStatus::Waiting>(decision.status->value)) noteAskedAnew();
    session_.setStatus(*decision.status, decision.source);
}

/// It tells that it asks: a question that looks like the one just answered is another.
void AgentStatusWatch::noteAskedAnew() {
    SessionApproval& approval = session_.approval();
    if (approval.pendingRequest) return;
    approval.approvalAnswered = false;
    lookForDialog();
}

StatusLook AgentStatusWatch::look() {
    const AgentScreenReading& reading = terminal_.reading();
    const Seconds told = toldWorkingSince_ ? Seconds(loop_.now() - *toldWorkingSince_) : Seconds(0);
    return {.kind = session_.identity().kind,
            .status = session_.status(),
            .userHasInteracted = userHasInteracted_,
            .hasRequest = session_.approval().pendingRequest.has_value(),
            .waitingEvidenceMisses = waitingEvidenceMisses_,
            .silence = terminal_.silence().count(),
            .screen = {.dialogUp = dialogOnScreen_, .busy = reading.busy, .composerVisible = reading.draft.has_value()},
            .hooks = {.arrived = hookEventsArrived_, .seen = hookEventsSeen_, .phase = hookPhase_},
            .agentPhase = agentPhase_,
            .title = title_,
            .statusFile = statusFile_,
            .hasNews = hasNews_,
            .toldWorkingFor = told.count(),
            .patterns = matchPatterns()};
}

AgentStatusRule::PatternEvidence AgentStatusWatch::matchPatterns() {
    if (busyMatchers_.empty() && waitingMatchers_.empty()) return {};
    const std::string rows = terminal_.lastRows(patternRows);
    return {.hasPatterns = true,
            .waitingMatched = anyMatches(waitingMatchers_, rows),
            .busyMatched = anyMatches(busyMatchers_, rows)};
}

bool AgentStatusWatch::isWaiting() const {
    return std::holds_alternative<SessionStatus::Waiting>(session_.status().value);
}

Date AgentStatusWatch::wallNow() const {
    return dateOf(loop_.wallTime());
}

}  // namespace orvane
