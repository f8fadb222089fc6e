#include "Orvane/Agents/SessionController.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Support/Text.h"
#include "Platform/ProcessGroup.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

/// In the place of a wait status, which is never negative.
constexpr int neverStarted = -1;

constexpr Duration noticeTime = std::chrono::seconds(4);

bool isWorking(const SessionStatus& status) {
    return std::holds_alternative<SessionStatus::Working>(status.value);
}

bool isWaiting(const SessionStatus& status) {
    return std::holds_alternative<SessionStatus::Waiting>(status.value);
}

}  // namespace

SessionController::SessionController(Identity identity, Appearance appearance, Surroundings surroundings)
    : identity_(std::move(identity)),
      appearance_(std::move(appearance)),
      surroundings_(std::move(surroundings)),
      evidence_{.since = identity_.startedAt} {}

SessionController::~SessionController() = default;

void SessionController::launch(SessionLauncher& launcher) {
    if (isAgent(identity_.kind)) {
        agent_ = std::make_unique<TerminalAgent>(*this,
                                                 TerminalAgent::Surroundings{.loop = surroundings_.loop,
                                                                             .home = surroundings_.home,
                                                                             .log = surroundings_.log,
                                                                             .transcripts = surroundings_.transcripts});
    }
    const auto bound = [weak = weak_from_this()](auto member) {
        return [weak, member](const auto&... arguments) {
            if (const auto self = weak.lock()) (self.get()->*member)(arguments...);
        };
    };
    auto launched = launcher.launch(*this, {.onActivity = bound(&SessionController::noteActivity),
                                            .onTitle = bound(&SessionController::noteTitle),
                                            .onNews = bound(&SessionController::noteNews),
                                            .onExit = bound(&SessionController::noteExit)});
    if (!launched) {
        launchFailure_ = std::move(launched.error());
        return noteExit(neverStarted);
    }
    process_ = *std::move(launched);
    forcedTranscriptID_ = process_->forcedTranscriptID();
    if (agent_ != nullptr) agent_->start();
}

void SessionController::setTransport(std::unique_ptr<ChatTransport> transport) {
    transport_ = std::move(transport);
}

std::string SessionController::title() const {
    if (!appearance_.userTitle.empty()) return appearance_.userTitle;
    if (identity_.agentSpec) return identity_.agentSpec->name;
    return std::string(rawValue(identity_.kind));
}

void SessionController::rename(const std::string& title) {
    appearance_.userTitle = Text::oneLine(title);
    changed();
}

pid_t SessionController::processId() const {
    return process_ == nullptr || hasExited_ ? 0 : process_->processId();
}

void SessionController::raiseAttention() {
    needsAttention_ = true;
    if (callbacks_.onAttention) callbacks_.onAttention();
    changed();
}

void SessionController::clearAttention() {
    const bool hadUnseenEnd = std::exchange(hasUnseenEnd_, false);
    if (std::exchange(needsAttention_, false) || hadUnseenEnd) changed();
}

void SessionController::noteFocus() {
    if (callbacks_.onFocus) callbacks_.onFocus();
}

void SessionController::setStatus(const SessionStatus& status, StatusSource source) {
    if (status == status_ || (hasExited_ && source != StatusSource::exit)) return;
    const bool wasWaiting = isWaiting(status_);
    const bool isAtRest = !isWorking(status) && !isWaiting(status);
    hasUnseenEnd_ = isAgent(identity_.kind) && isAtRest && (hasUnseenEnd_ || isWorking(status_));
    const Date now = dateOf(surroundings_.loop.wallTime());
    status_ = status;
    evidence_ = {.source = source, .since = now};
    if (wasWaiting) approval_.withdraw();
    if (isWaiting(status_)) approval_.raise(now);
    needsAttention_ = isWaiting(status_) || (needsAttention_ && !wasWaiting);
    changed();
    if (isWaiting(status_) && callbacks_.onAttention) callbacks_.onAttention();
}

void SessionController::type(std::string_view bytes) {
    if (hasExited_) return;
    if (agent_ != nullptr) return agent_->type(bytes);
    if (HeadlessTerminal* headless = terminal()) headless->send(bytes);
}

void SessionController::noteRequest(const ApprovalPolicy::Request& request) {
    const bool isAnother = approval_.ask(request, dateOf(surroundings_.loop.wallTime()));
    if (isAnother && isWaiting(status_)) raiseAttention();
}

void SessionController::noteClear() {
    needsAttention_ = false;
    hasUnseenEnd_ = false;
    approval_ = {};
    if (callbacks_.onAITitle) callbacks_.onAITitle({});
    if (hasExited_) return;
    const bool isReady = std::holds_alternative<SessionStatus::Ready>(status_.value);
    setStatus({SessionStatus::Ready{}}, StatusSource::clear);
    if (isReady) changed();
}

void SessionController::noteTranscript(TranscriptWatch::News news) {
    if (callbacks_.onTranscriptGrowth) callbacks_.onTranscriptGrowth(news);
    changed();
}

void SessionController::showNotice(std::string_view textKey) {
    transientNotice_ = surroundings_.l10n.text(textKey);
    noticeTimer_ = surroundings_.loop.after(noticeTime, [this] {
        transientNotice_.clear();
        changed();
    });
    changed();
}

void SessionController::noteActivity(std::string_view bytes) {
    if (callbacks_.onOutput) callbacks_.onOutput();
    if (hasExited_) return;
    if (agent_ != nullptr) return agent_->noteOutput(bytes);
    setStatus({SessionStatus::Working{}}, StatusSource::output);
}

void SessionController::noteTitle() {
    if (agent_ != nullptr && !hasExited_) agent_->noteTitle();
}

void SessionController::noteNews(const TerminalNews& news) {
    if (callbacks_.onNews) callbacks_.onNews(news);
}

void SessionController::noteExit(int waitStatus) {
    hasExited_ = true;
    if (agent_ != nullptr) agent_->noteExit();
    setStatus(waitStatus == 0 ? SessionStatus{SessionStatus::Done{}} : SessionStatus{SessionStatus::Failed{waitStatus}},
              StatusSource::exit);
}

void SessionController::changed() {
    const SessionStatus before = std::exchange(publishedStatus_, status_);
    if (callbacks_.onChange) callbacks_.onChange(before);
}

void SessionController::terminate() {
    if (std::exchange(terminationAsked_, true)) return;
    if (agent_ != nullptr) agent_->stop();
    if (transport_ != nullptr) return transport_->stop();
    if (process_ == nullptr || hasExited_) return;
    collectProcessGroups();
    for (const pid_t group : terminatingProcessGroups_)
        ProcessGroup::signal(group, SIGTERM);
    process_->terminate();
}

/// Read while the program still runs: afterwards its terminal can no longer say who is in the foreground.
void SessionController::collectProcessGroups() {
    for (const pid_t group : {ProcessGroup::of(process_->processId()), process_->foregroundProcessGroup()}) {
        if (group >= 2) terminatingProcessGroups_.insert(group);
    }
}

bool SessionController::isStillTerminating() const {
    if (transport_ != nullptr) return transport_->isAlive();
    return std::ranges::any_of(terminatingProcessGroups_, ProcessGroup::isAlive);
}

void SessionController::kill() {
    if (transport_ != nullptr) return transport_->kill();
    if (process_ == nullptr) return;
    if (!hasExited_) collectProcessGroups();
    for (const pid_t group : terminatingProcessGroups_)
        ProcessGroup::signal(group, SIGKILL);
}

}  // namespace orvane
